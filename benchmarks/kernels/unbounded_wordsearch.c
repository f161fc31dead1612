// class: unbounded
// sweep: argument 10 7 8 9
//
// Counts the paths that spell a word in a grid of letters, four directions in a
// loop, no square twice. Here for a self call inside a loop in a function of
// two arguments that marks and unmarks.
//
// Reference: the same paths with an explicit stack.

#include "kernel.h"

enum { Width = 18, Squares = Width * Width, Cases = 4, Longest = 10 };

static char Grid[Squares];
static const char *Word;

static char Words[Cases][Longest + 1] = {"ababbabaab", "aabbaabbaa",
                                         "bbbabbbabb", "abaabaabaa"};
static const int Directions[4] = {1, -1, Width, -Width};

static uint32_t spell(int Square, int Letter) {
  KERNEL_CALL();
  if (Grid[Square] != Word[Letter])
    return 0;
  if (!Word[Letter + 1])
    return 1;
  char Saved = Grid[Square];
  Grid[Square] = '.';
  uint32_t Paths = 0;
  for (int D = 0; D < 4; ++D)
    Paths += spell(Square + Directions[D], Letter + 1);
  Grid[Square] = Saved;
  return Paths;
}

static void fillGrid(void) {
  uint32_t Random = 77;
  for (int I = 0; I < Squares; ++I) {
    int X = I % Width, Y = I / Width;
    int Border = X == 0 || Y == 0 || X == Width - 1 || Y == Width - 1;
    Grid[I] = Border ? '.' : (char)('a' + kernelRandom(&Random) % 2);
  }
}

static uint64_t referencePaths(const char *W, int Start) {
  int Path[16], Next[16], Length = 1;
  uint64_t Paths = 0;
  if (Grid[Start] != W[0])
    return 0;
  Path[0] = Start;
  Next[0] = 0;
  while (Length > 0) {
    int D = Next[Length - 1]++;
    if (D == 4) {
      --Length;
      continue;
    }
    int There = Path[Length - 1] + Directions[D], Fresh = 1;
    for (int I = 0; I < Length; ++I)
      Fresh &= Path[I] != There;
    if (!Fresh || Grid[There] != W[Length])
      continue;
    if (!W[Length + 1]) {
      ++Paths;
      continue;
    }
    Path[Length] = There;
    Next[Length++] = 0;
  }
  return Paths;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 5500);
  int Length = (int)kernelArgument(Argc, Argv, 2, 10, 2, Longest);
  for (int Case = 0; Case < Cases; ++Case)
    Words[Case][Length] = 0;
  uint64_t Sum = 0, Expected = 0;
  fillGrid();
  for (long R = 0; R < Repeats; ++R) {
    Word = Words[R % Cases];
    kernelClobber(Grid);
    for (int I = 0; I < Squares; ++I)
      Sum += spell(I, 0);
  }

  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t Paths = 0;
    for (int I = 0; I < Squares; ++I)
      Paths += referencePaths(Words[Case], I);
    Expected += kernelShare(Repeats, Cases, Case) * Paths;
  }
  return kernelReport("wordsearch", Repeats, Sum, Expected);
}
