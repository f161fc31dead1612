// Body of the ring_puzzle* kernels: counts the ways to complete a puzzle of
// SIDE x SIDE cells whose rows, columns and boxes (BOX_WIDTH x BOX_HEIGHT) hold
// every digit once, cell after cell, with bit masks of the digits used. The
// argument is the cell; everything else follows from it, and all of it but the
// row from the remainder. Visits counts the calls per column.
//
// Reference: the same search with an explicit stack over a plain grid, every
// digit tested by looking along row, column and box.

#include "ring.h"

enum {
  Side = SIDE,
  Cells = Side * Side,
  Cases = 4,
  AllDigits = (1 << Side) - 1
};

static unsigned Given[Cells + 1]; // Digit + 1, or 0 for an empty cell.
static unsigned RowUsed[Side + 1], ColumnUsed[Side], BoxUsed[Side + 1];
static uint64_t Visits[Side];
static uint64_t Solutions;

INLINERECURSION_SPECIALIZE
static void solve(INDEX Cell) {
  KERNEL_CALL();
  unsigned Column = Cell % SIDE;
  unsigned Inner = Cell % BOX_WIDTH;
  ++Visits[Column];
  if (Cell == Cells) {
    ++Solutions;
    return;
  }
  if (Given[Cell]) {
    solve(Cell + 1);
    return;
  }
  unsigned Row = (unsigned)Cell / SIDE;
  unsigned Box =
      Row / BOX_HEIGHT * (SIDE / BOX_WIDTH) + (Column - Inner) / BOX_WIDTH;
  unsigned Free =
      AllDigits & ~(RowUsed[Row] | ColumnUsed[Column] | BoxUsed[Box]);
  while (Free) {
    unsigned Digit = Free & (0 - Free);
    Free ^= Digit;
    RowUsed[Row] |= Digit;
    ColumnUsed[Column] |= Digit;
    BoxUsed[Box] |= Digit;
    solve(Cell + 1);
    RowUsed[Row] ^= Digit;
    ColumnUsed[Column] ^= Digit;
    BoxUsed[Box] ^= Digit;
  }
}

/// Clears cells of a finished grid; the case relabels the digits, which changes
/// the order of the search, and the cells that are cleared.
static void givePuzzle(unsigned Case) {
  uint32_t Random = 2024 + Case;
  for (unsigned I = 0; I < Side; ++I)
    RowUsed[I] = ColumnUsed[I] = BoxUsed[I] = 0;
  for (unsigned Cell = 0; Cell < Cells; ++Cell) {
    unsigned Row = Cell / Side, Column = Cell % Side;
    unsigned Digit =
        (Row % BOX_HEIGHT * BOX_WIDTH + Row / BOX_HEIGHT + Column + Case) %
        Side;
    unsigned Keep = kernelRandom(&Random) % 100 >= EMPTY_PERCENT;
    Given[Cell] = Keep ? Digit + 1 : 0;
    if (!Keep)
      continue;
    RowUsed[Row] |= 1u << Digit;
    ColumnUsed[Column] |= 1u << Digit;
    BoxUsed[Row / BOX_HEIGHT * (Side / BOX_WIDTH) + Column / BOX_WIDTH] |=
        1u << Digit;
  }
}

static int fits(const unsigned *Grid, unsigned Cell, unsigned Digit) {
  unsigned Row = Cell / Side, Column = Cell % Side;
  unsigned BoxStart =
      Row / BOX_HEIGHT * BOX_HEIGHT * Side + Column / BOX_WIDTH * BOX_WIDTH;
  for (unsigned I = 0; I < Side; ++I)
    if (Grid[Row * Side + I] == Digit || Grid[I * Side + Column] == Digit ||
        Grid[BoxStart + I / BOX_WIDTH * Side + I % BOX_WIDTH] == Digit)
      return 0;
  return 1;
}

/// Returns the checksum of one search that starts at Start.
static uint64_t referenceSearch(unsigned Start) {
  unsigned Grid[Cells];
  uint64_t Checksum = 0;
  for (unsigned Cell = 0; Cell < Cells; ++Cell)
    Grid[Cell] = Given[Cell];
  unsigned Cell = Start;
  int Forward = 1;
  for (;;) {
    if (Forward) {
      Checksum += Cell % Side + 1;
      if (Cell == Cells) {
        Checksum += 1000;
        Forward = 0;
      }
    }
    if (Forward && Given[Cell]) {
      ++Cell;
      continue;
    }
    if (!Forward) {
      do {
        if (Cell == Start)
          return Checksum;
        --Cell;
      } while (Given[Cell]);
    }
    unsigned Digit = Grid[Cell] + 1;
    Grid[Cell] = 0;
    while (Digit <= Side && !fits(Grid, Cell, Digit))
      ++Digit;
    Forward = Digit <= Side;
    if (Forward)
      Grid[Cell++] = Digit;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, REPEATS);
  unsigned Start = RING_START(Argc, Argv, 0, Cells);
  for (long R = 0; R < Repeats; ++R) {
    givePuzzle((unsigned)(R % Cases));
    kernelClobber(Given);
    solve(Start);
  }
  uint64_t Checksum = Solutions * 1000;
  for (unsigned I = 0; I < Side; ++I)
    Checksum += (I + 1) * Visits[I];

  uint64_t Expected = 0;
  for (unsigned Case = 0; Case < Cases; ++Case) {
    uint64_t Share = kernelShare(Repeats, Cases, Case);
    givePuzzle(Case);
    if (Share)
      Expected += Share * referenceSearch(Start);
  }
  return kernelReport(NAME, Repeats, Checksum, Expected);
}
