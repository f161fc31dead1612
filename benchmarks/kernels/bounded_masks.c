// class: bounded
// sweep: SIZE 6 4 5 7
//
// SIZE queens with some squares blocked, by bit masks: the row and three masks
// are the arguments, all known where the search begins, but only the row
// further on. Here for several arguments of which one steps.
//
// Reference: every permutation of the columns in lexicographic order, tested
// pair by pair.

#include "kernel.h"

#ifndef SIZE
#define SIZE 6
#endif

enum { Cases = 8, Size = SIZE };

static uint32_t Blocked[Size];
static uint64_t Solutions;

static void place(int Row, uint32_t Columns, uint32_t Rising,
                  uint32_t Falling) {
  KERNEL_CALL();
  if (Row == Size) {
    ++Solutions;
    return;
  }
  uint32_t Free =
      ((1u << Size) - 1) & ~(Columns | Rising | Falling | Blocked[Row]);
  while (Free) {
    uint32_t Square = Free & (0 - Free);
    Free ^= Square;
    place(Row + 1, Columns | Square, (Rising | Square) << 1,
          (Falling | Square) >> 1);
  }
}

static void blockSquares(long Case) {
  for (int Y = 0; Y < Size; ++Y) {
    Blocked[Y] = 0;
    for (int X = 0; X < Size; ++X)
      if (Case > 0 && (Y * 5 + X * 3 + Case) % 11 == 0)
        Blocked[Y] |= 1u << X;
  }
}

static uint64_t referenceCount(void) {
  int P[Size];
  uint64_t Count = 0;
  for (int I = 0; I < Size; ++I)
    P[I] = I;
  for (;;) {
    int Good = 1;
    for (int I = 0; I < Size && Good; ++I) {
      Good = !(Blocked[I] >> P[I] & 1);
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
    int Held = P[I];
    P[I] = P[J];
    P[J] = Held;
    for (int A = I + 1, B = Size - 1; A < B; ++A, --B) {
      Held = P[A];
      P[A] = P[B];
      P[B] = Held;
    }
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 500000);
  for (long R = 0; R < Repeats; ++R) {
    blockSquares(R % Cases);
    kernelClobber(Blocked);
    place(0, 0, 0, 0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t Share = kernelShare(Repeats, Cases, Case);
    blockSquares(Case);
    if (Share)
      Expected += Share * referenceCount();
  }
  return kernelReport("masks", Repeats, Solutions, Expected);
}
