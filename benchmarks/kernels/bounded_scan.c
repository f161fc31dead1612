// class: bounded
// sweep: LEVELS 6 4 5 7
//
// A scan of seven columns that recurses into few of them: one trip in 32,
// LEVELS levels at most, the level as the only argument. Here because nearly
// all work lies in the outermost loop and folds when that loop is unrolled
// (remainders by the number of the trip); a chain of copies that keeps it from
// being unrolled costs more than the calls that it saves.
//
// Reference: the same scan with an explicit stack.

#include "kernel.h"

#ifndef LEVELS
#define LEVELS 6
#endif

enum { Cases = 64, Columns = 7, Levels = LEVELS };

static uint64_t Board;
static uint32_t Weights[Columns];

static uint32_t scan(int Level) {
  KERNEL_CALL();
  if (Level == Levels)
    return (uint32_t)(Board >> 7);
  uint32_t Total = 0;
  for (unsigned C = 0; C < Columns; ++C) {
    uint64_t Column = (Board >> (C * 7)) & 127;
    Total += (uint32_t)(Column * (C * C + 3)) % (C * 2 + 3);
    Total ^= Weights[C] * (C + 5);
    if ((Board * (C * 2 + 1) >> (C + 9)) & 31)
      continue;
    uint64_t Old = Board;
    Board = Old * 6364136223846793005u + Column + C;
    Total += scan(Level + 1);
    Board = Old;
  }
  return Total;
}

static uint64_t startBoard(long Case) {
  return (uint64_t)(Case + 1) * 0x9E3779B97F4A7C15u;
}

static uint32_t referenceScan(uint64_t Start) {
  uint64_t Boards[Levels + 1] = {Start};
  uint32_t Totals[Levels + 1] = {0};
  unsigned Next[Levels + 1] = {0};
  int Level = 0;
  for (;;) {
    uint32_t Result;
    if (Level == Levels) {
      Result = (uint32_t)(Boards[Level] >> 7);
    } else if (Next[Level] == Columns) {
      Result = Totals[Level];
    } else {
      unsigned C = Next[Level]++;
      uint64_t B = Boards[Level], Column = (B >> (C * 7)) & 127;
      Totals[Level] += (uint32_t)(Column * (C * C + 3)) % (C * 2 + 3);
      Totals[Level] ^= Weights[C] * (C + 5);
      if (!((B * (C * 2 + 1) >> (C + 9)) & 31)) {
        ++Level;
        Boards[Level] = B * 6364136223846793005u + Column + C;
        Totals[Level] = 0;
        Next[Level] = 0;
      }
      continue;
    }
    if (Level == 0)
      return Result;
    Totals[--Level] += Result;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 20000000);
  for (uint32_t C = 0; C < Columns; ++C)
    Weights[C] = C * 2654435761u;
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Board = startBoard(R % Cases);
    kernelClobber(&Board);
    Sum += scan(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected +=
        kernelShare(Repeats, Cases, Case) * referenceScan(startBoard(Case));
  return kernelReport("scan", Repeats, Sum, Expected);
}
