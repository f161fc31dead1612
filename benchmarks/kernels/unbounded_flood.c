// class: unbounded
// sweep: argument 4 3 5 6
//
// Flood fill of a grid with walls, four self calls in a row. Here for calls
// outside a loop, most of which return at once.
//
// Reference: the regions joined by union-find; the checksum is the sum of the
// squares of their sizes.

#include "kernel.h"

enum { Width = 64, Cells = Width * Width, Cases = 4 };

static unsigned char Open[Cells];

static uint32_t fill(int Cell) {
  KERNEL_CALL();
  if (!Open[Cell])
    return 0;
  Open[Cell] = 0;
  uint32_t Size = 1;
  Size += fill(Cell + 1);
  Size += fill(Cell - 1);
  Size += fill(Cell + Width);
  Size += fill(Cell - Width);
  return Size;
}

static uint32_t Walls;

/// Draws walls at the border and at about Walls cells in ten.
static void drawMap(long Case) {
  uint32_t Random = 3 + (uint32_t)Case;
  for (int I = 0; I < Cells; ++I) {
    int X = I % Width, Y = I / Width;
    int Border = X == 0 || Y == 0 || X == Width - 1 || Y == Width - 1;
    Open[I] = kernelRandom(&Random) % 10 >= Walls && !Border;
  }
}

static int Leader[Cells];

static int findLeader(int Cell) {
  while (Leader[Cell] != Cell)
    Cell = Leader[Cell] = Leader[Leader[Cell]];
  return Cell;
}

static uint64_t referenceSum(void) {
  uint32_t Size[Cells] = {0};
  for (int I = 0; I < Cells; ++I) {
    Leader[I] = I;
    if (Open[I] && Open[I - 1])
      Leader[I] = findLeader(I - 1);
    if (Open[I] && Open[I - Width])
      Leader[findLeader(I)] = findLeader(I - Width);
  }
  for (int I = 0; I < Cells; ++I)
    Size[findLeader(I)] += Open[I];
  uint64_t Sum = 0;
  for (int I = 0; I < Cells; ++I)
    Sum += (uint64_t)Size[I] * Size[I];
  return Sum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000);
  Walls = (uint32_t)kernelArgument(Argc, Argv, 2, 4, 1, 9);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    drawMap(R % Cases);
    kernelClobber(Open);
    for (int I = 0; I < Cells; ++I) {
      uint64_t Size = fill(I);
      Sum += Size * Size;
    }
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    drawMap(Case);
    Expected += kernelShare(Repeats, Cases, Case) * referenceSum();
  }
  return kernelReport("flood", Repeats, Sum, Expected);
}
