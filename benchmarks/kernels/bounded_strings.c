// class: bounded
// sweep: LENGTH 6 4 5 7
//
// Counts the strings of LENGTH letters over an alphabet of five that do not
// contain a given word of three letters, a string and its reverse once. The
// position is the only argument, the text a global array. Here as string
// recursion of fixed length: the test of the last letters depends on the
// position only and folds per copy.
//
// Reference: all such strings as numbers, read digit by digit.

#include "kernel.h"

#ifndef LENGTH
#define LENGTH 6
#endif

enum { Cases = 5, Letters = 5, Length = LENGTH };

static int Text[Length];
static int Word[3];
static uint64_t Count;

static void extend(int Position) {
  KERNEL_CALL();
  if (Position == Length) {
    int I = 0;
    while (I < (Length - 1) / 2 && Text[I] == Text[Length - 1 - I])
      ++I;
    if (Text[I] <= Text[Length - 1 - I])
      ++Count;
    return;
  }
  for (int Letter = 0; Letter < Letters; ++Letter) {
    Text[Position] = Letter;
    if (Position >= 2 && Text[Position] == Word[2] &&
        Text[Position - 1] == Word[1] && Text[Position - 2] == Word[0])
      continue;
    extend(Position + 1);
  }
}

static void chooseWord(long Case) {
  Word[0] = (int)Case;
  Word[1] = (int)(Case * 3 % 5);
  Word[2] = (int)(4 - Case);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 14000);
  for (long R = 0; R < Repeats; ++R) {
    chooseWord(R % Cases);
    kernelClobber(Word);
    extend(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    chooseWord(Case);
    uint64_t Total = 0;
    int Strings = 1;
    for (int I = 0; I < Length; ++I)
      Strings *= Letters;
    for (int Number = 0; Number < Strings; ++Number) {
      int Digits[Length], Rest = Number, Mirrored = 0, Contains = 0;
      for (int I = 0; I < Length; ++I, Rest /= Letters) {
        Digits[Length - 1 - I] = Rest % Letters;
        Mirrored = Mirrored * Letters + Rest % Letters;
      }
      for (int I = 0; I < Length - 2; ++I)
        Contains |= Digits[I] == Word[0] && Digits[I + 1] == Word[1] &&
                    Digits[I + 2] == Word[2];
      Total += !Contains && Number <= Mirrored;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Total;
  }
  return kernelReport("strings", Repeats, Count, Expected);
}
