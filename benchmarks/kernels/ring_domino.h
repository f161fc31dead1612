// Body of the ring_domino* kernels: counts the domino tilings of a board of
// seven columns and six rows with two squares missing, square after square. The
// covered squares are a set of bits. Visits counts the calls per column.
//
// Reference: the number of ways for every set of squares that stick out of the
// tiled part, carried from square to square.

#include "ring.h"

enum { Width = 7, Squares = Width * 6, Cases = 8 };

static uint64_t Covered;
static uint64_t Visits[Width];
static uint64_t Tilings;

INLINERECURSION_SPECIALIZE
static void tile(int Square) {
  KERNEL_CALL();
  int Column = Square % 7;
  ++Visits[Column];
  if (Square == Squares) {
    ++Tilings;
    return;
  }
  uint64_t Here = (uint64_t)1 << Square;
  if (Covered & Here) {
    tile(Square + 1);
    return;
  }
  if (Column != 6 && !(Covered & (Here << 1))) {
    Covered ^= Here << 1;
    tile(Square + 1);
    Covered ^= Here << 1;
  }
  if (Square < Squares - Width && !(Covered & (Here << 7))) {
    Covered ^= Here << 7;
    tile(Square + 1);
    Covered ^= Here << 7;
  }
}

/// Returns the missing squares: one of each colour.
static uint64_t missingSquares(long Case) {
  return (uint64_t)1 << (2 * Case) | (uint64_t)1 << (41 - 4 * Case);
}

/// Returns the checksum of one search: the calls weighted by column plus 1000
/// for each tiling.
static uint64_t referenceCount(uint64_t Missing, unsigned Start) {
  uint64_t Ways[1 << Width] = {0}, Checksum = 0;
  Ways[Missing >> Start & ((1 << Width) - 1)] = 1;
  for (unsigned Square = Start;; ++Square) {
    uint64_t Next[1 << Width] = {0}, All = 0;
    // Bit I of State: square Square + I is covered or missing.
    for (unsigned State = 0; State < 1 << Width; ++State)
      All += Ways[State];
    Checksum += All * (Square % Width + 1);
    if (Square == Squares)
      return Checksum + 1000 * All;
    unsigned In = Missing >> (Square + Width) & 1;
    for (unsigned State = 0; State < 1 << Width; ++State) {
      unsigned After = State >> 1 | In << (Width - 1);
      if (State & 1) {
        Next[After] += Ways[State];
        continue;
      }
      if (Square % Width < Width - 1 && !(State & 2))
        Next[After | 1] += Ways[State];
      if (Square + Width < Squares && !In)
        Next[After | 1 << (Width - 1)] += Ways[State];
    }
    for (unsigned State = 0; State < 1 << Width; ++State)
      Ways[State] = Next[State];
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 3200);
  unsigned Start = RING_START(Argc, Argv, 0, Squares);
  for (long R = 0; R < Repeats; ++R) {
    Covered = missingSquares(R % Cases);
    kernelClobber(&Covered);
    tile(Start);
  }
  uint64_t Checksum = 1000 * Tilings;
  for (unsigned I = 0; I < Width; ++I)
    Checksum += (I + 1) * Visits[I];

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) *
                referenceCount(missingSquares(Case), Start);
  return kernelReport(NAME, Repeats, Checksum, Expected);
}
