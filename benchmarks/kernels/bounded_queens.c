// class: bounded
// sweep: SIZE 7 5 6 8
//
// SIZE queens with some squares blocked, the row as the only argument, the
// attacked columns and diagonals in globals; the last row counts its free
// squares, so the search is SIZE activations deep. Here as the usual
// backtracking on flags in arrays, whose indices fold with the row.
//
// Reference: every permutation of the columns in lexicographic order, tested
// pair by pair.

#include "kernel.h"

#ifndef SIZE
#define SIZE 7
#endif

enum { Cases = 8, Size = SIZE };

static unsigned char Blocked[Size][Size];
static unsigned char Column[Size], Rising[2 * Size], Falling[2 * Size];
static uint64_t Solutions;

static void placeQueen(int Row) {
  KERNEL_CALL();
  for (int X = 0; X < Size; ++X) {
    if (Blocked[Row][X] | Column[X] | Rising[Row + X] |
        Falling[Row - X + Size - 1])
      continue;
    if (Row == Size - 1) {
      ++Solutions;
      continue;
    }
    Column[X] = Rising[Row + X] = Falling[Row - X + Size - 1] = 1;
    placeQueen(Row + 1);
    Column[X] = Rising[Row + X] = Falling[Row - X + Size - 1] = 0;
  }
}

static void blockSquares(long Case) {
  for (int Y = 0; Y < Size; ++Y)
    for (int X = 0; X < Size; ++X)
      Blocked[Y][X] = (Y * 5 + X * 3 + Case) % 11 == 0 && Case > 0;
}

static uint64_t referenceCount(void) {
  int P[Size];
  uint64_t Count = 0;
  for (int I = 0; I < Size; ++I)
    P[I] = I;
  for (;;) {
    int Good = 1;
    for (int I = 0; I < Size && Good; ++I) {
      Good = !Blocked[I][P[I]];
      for (int J = 0; J < I && Good; ++J)
        Good = abs(P[I] - P[J]) != I - J;
    }
    Count += (uint64_t)Good;

    int I = Size - 2;
    while (I >= 0 && P[I] > P[I + 1])
      --I;
    if (I < 0)
      return Count;
    int J = Size - 1;
    while (P[J] < P[I])
      --J;
    int T = P[I];
    P[I] = P[J];
    P[J] = T;
    for (int L = I + 1, H = Size - 1; L < H; ++L, --H) {
      T = P[L];
      P[L] = P[H];
      P[H] = T;
    }
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 240000);
  for (long R = 0; R < Repeats; ++R) {
    blockSquares(R % Cases);
    kernelClobber(Blocked);
    placeQueen(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    blockSquares(Case);
    Expected += kernelShare(Repeats, Cases, Case) * referenceCount();
  }
  return kernelReport("queens", Repeats, Solutions, Expected);
}
