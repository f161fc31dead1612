// class: bounded
// sweep: STEPS 6 4 5 7
//
// Self-avoiding walks of STEPS steps on a grid with a blocked square, four
// directions in a loop, the step as the only argument, position and visited
// squares globals. Here because its branch on the visited square cannot be
// predicted from the argument; only the end of the recursion folds.
//
// Reference: each of the 4^STEPS direction sequences followed step by step.

#include "kernel.h"

#ifndef STEPS
#define STEPS 6
#endif

enum { Steps = STEPS, Cases = 8, Width = 16, Centre = 8 * Width + 8 };

static const int Directions[4] = {1, -1, Width, -Width};
static unsigned char Visited[Width * Width];
static int Square;
static uint64_t Count;

static void step(int Number) {
  KERNEL_CALL();
  if (Number == Steps) {
    ++Count;
    return;
  }
  int Here = Square;
  for (int D = 0; D < 4; ++D) {
    int There = Here + Directions[D];
    if (Visited[There])
      continue;
    Visited[There] = 1;
    Square = There;
    step(Number + 1);
    Visited[There] = 0;
  }
  Square = Here;
}

/// The square a case blocks; the centre itself means none.
static int blockedSquare(long Case) {
  static const int Offsets[Cases] = {0,         1,         -2,         Width,
                                     2 * Width, Width + 1, -Width + 2, -3};
  return Centre + Offsets[Case];
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 240000);
  for (long R = 0; R < Repeats; ++R) {
    int Block = blockedSquare(R % Cases);
    Visited[Block] = Visited[Centre] = 1;
    Square = Centre;
    kernelClobber(Visited);
    step(0);
    Visited[Block] = Visited[Centre] = 0;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t Good = 0;
    for (int Sequence = 0; Sequence < 1 << 2 * Steps; ++Sequence) {
      int Path[Steps + 2] = {blockedSquare(Case), Centre};
      int Length = 2;
      for (; Length < Steps + 2; ++Length) {
        int Next =
            Path[Length - 1] + Directions[Sequence >> (2 * (Length - 2)) & 3];
        int I = 0;
        while (I < Length && Path[I] != Next)
          ++I;
        if (I < Length)
          break;
        Path[Length] = Next;
      }
      Good += Length == Steps + 2;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Good;
  }
  return kernelReport("walks", Repeats, Count, Expected);
}
