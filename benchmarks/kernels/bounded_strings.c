// class: bounded
//
// Counts the strings of six letters over an alphabet of five that do not
// contain a given word of three letters, a string and its reverse once. The
// position is the only argument, the text a global array. Here as string
// recursion of fixed length: the test of the last letters depends on the
// position only and folds per copy.
//
// Reference: all 5^6 strings as numbers, read digit by digit.

#include "kernel.h"

enum { Cases = 5, Letters = 5 };

static int Text[6];
static int Word[3];
static uint64_t Count;

static void extend(int Position) {
  if (Position == 6) {
    int I = 0;
    while (I < 2 && Text[I] == Text[5 - I])
      ++I;
    if (Text[I] <= Text[5 - I])
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
    for (int Number = 0; Number < 15625; ++Number) {
      int Digits[6], Rest = Number, Mirrored = 0, Contains = 0;
      for (int I = 0; I < 6; ++I, Rest /= Letters) {
        Digits[5 - I] = Rest % Letters;
        Mirrored = Mirrored * Letters + Rest % Letters;
      }
      for (int I = 0; I < 4; ++I)
        Contains |= Digits[I] == Word[0] && Digits[I + 1] == Word[1] &&
                    Digits[I + 2] == Word[2];
      Total += !Contains && Number <= Mirrored;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Total;
  }
  return kernelReport("strings", Repeats, Count, Expected);
}
