/* A 9 x 9 puzzle solver: every row, column and box holds each digit once. The
 * recursion goes from cell to cell, and what a cell is (its column, its place in
 * the box) follows from remainders of its index. Counts all solutions of a few
 * sparse puzzles.
 *
 * The solver asks for a ring of copies. Because the search starts at a constant
 * cell, each of the 81 cells gets code of its own, with all its masks at known
 * addresses. */

#include "inlinerecursion/request.h"
#include <stdio.h>

enum { Side = 9, Cells = Side * Side, AllDigits = (1 << Side) - 1 };

static const char *const Puzzles[] = {
    "53..7....6..195....98....6.8...6...34..8.3..17...2...6.6....28....419..5....8."
    "...",
    "1....7.9..3..2...8..96..5....53..9...1..8...26....4...3......1..4......7..7..."
    "3..",
    "....7..2.8.......6.1.2.5...9.54....8.........3....85.1...3.2.8.4.......9.7..6."
    "...",
};

static unsigned Given[Cells + 1];
static unsigned RowUsed[Side + 1], ColumnUsed[Side], BoxUsed[Side + 1];
static unsigned long Solutions, Visits;

INLINERECURSION_SPECIALIZE
static void solve(int Cell) {
  int Column = Cell % 9, Inner = Cell % 3;
  ++Visits;
  if (Cell == Cells) {
    ++Solutions;
    return;
  }
  if (Given[Cell]) {
    solve(Cell + 1);
    return;
  }
  int Row = Cell / 9, Box = Row / 3 * 3 + (Column - Inner) / 3;
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

static void read(const char *Text) {
  for (int I = 0; I < Side; ++I)
    RowUsed[I] = ColumnUsed[I] = BoxUsed[I] = 0;
  for (int Cell = 0; Cell < Cells; ++Cell) {
    Given[Cell] = Text[Cell] != '.';
    if (!Given[Cell])
      continue;
    unsigned Digit = 1u << (Text[Cell] - '1');
    RowUsed[Cell / 9] |= Digit;
    ColumnUsed[Cell % 9] |= Digit;
    BoxUsed[Cell / 27 * 3 + Cell % 9 / 3] |= Digit;
  }
}

int main(void) {
  for (int Round = 0; Round < 600; ++Round)
    for (unsigned I = 0; I < sizeof Puzzles / sizeof *Puzzles; ++I) {
      read(Puzzles[I]);
      solve(0);
    }
  printf("%lu solutions, %lu cells visited\n", Solutions, Visits);
  return 0;
}
