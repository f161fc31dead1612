// class: states
// sweep: argument 4 0 2 8
//
// Eight queens with row and size as arguments, entered with 0 and 8, and flags
// in arrays; some squares are blocked. Here for a state of which one part never
// changes. The input is how many squares are blocked at most.
//
// Reference: every arrangement of one queen in each row, as a number of eight
// digits, counted up with a skip over what is wrong already.

#include "kernel.h"

enum { MaxSize = 8, Cases = 4 };

static unsigned char Blocked[MaxSize][MaxSize];
static unsigned char Column[MaxSize], Rising[2 * MaxSize], Falling[2 * MaxSize];
static int Place[MaxSize];
static uint64_t Solutions, Checksum;

static void placeQueen(int Row, int Size) {
  KERNEL_CALL();
  if (Row == Size) {
    ++Solutions;
    for (int I = 0; I < Size; ++I)
      Checksum += (uint64_t)(Place[I] * (I + 1));
    return;
  }
  for (int X = 0; X < Size; ++X) {
    if (Blocked[Row][X] | Column[X] | Rising[Row + X] |
        Falling[Row - X + Size - 1])
      continue;
    Column[X] = Rising[Row + X] = Falling[Row - X + Size - 1] = 1;
    Place[Row] = X;
    placeQueen(Row + 1, Size);
    Column[X] = Rising[Row + X] = Falling[Row - X + Size - 1] = 0;
  }
}

static void blockSquares(long Case, int Count) {
  uint32_t Random = 40 + (uint32_t)Case;
  for (int I = 0; I < MaxSize * MaxSize; ++I)
    Blocked[I / MaxSize][I % MaxSize] = 0;
  for (int I = 0; I < Count; ++I) {
    uint32_t Square = kernelRandom(&Random) % (MaxSize * MaxSize);
    Blocked[Square / MaxSize][Square % MaxSize] = 1;
  }
}

static uint64_t reference(void) {
  int P[MaxSize], Row = 0;
  uint64_t Sum = 0;
  P[0] = -1;
  while (Row >= 0) {
    int Good = ++P[Row] < MaxSize;
    if (!Good) {
      --Row;
      continue;
    }
    Good = !Blocked[Row][P[Row]];
    for (int I = 0; I < Row && Good; ++I)
      Good = P[I] != P[Row] && abs(P[I] - P[Row]) != Row - I;
    if (!Good)
      continue;
    if (Row < MaxSize - 1) {
      P[++Row] = -1;
      continue;
    }
    Sum += 1000;
    for (int I = 0; I < MaxSize; ++I)
      Sum += (uint64_t)(P[I] * (I + 1));
  }
  return Sum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000);
  int Count = (int)kernelArgument(Argc, Argv, 2, 4, 0, 64);
  for (long R = 0; R < Repeats; ++R) {
    blockSquares(R % Cases, Count);
    kernelClobber(Blocked);
    placeQueen(0, MaxSize);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    blockSquares(Case, Count);
    Expected += kernelShare(Repeats, Cases, Case) * reference();
  }
  return kernelReport("backtrack", Repeats, Solutions * 1000 + Checksum,
                      Expected);
}
