// What the states_rows* kernels in C and C++ share around the search: the
// board, its cases, the reference and main. The nine loops are in
// states_rows_nest.h.
//
// Rows count from 1 to 9. Blocked[Column][Digit][Row] counts what keeps a digit
// away from a square: squares above it in its column and in its box, and the
// square's own given digit, if it is another one. A row is filled from left to
// right, and each of its squares blocks its digit in the rows below until it is
// taken back.
//
// Reference: the same boards with an explicit stack over a plain grid, with
// masks of the digits that are used in each row, column and box.

#ifndef BENCH_STATES_ROWS_H
#define BENCH_STATES_ROWS_H

#include "kernel.h"

enum { Side = 9, Box = 3, Cells = Side * Side, Cases = 4 };

static int Blocked[Side][Side][Side + 1];
static uint64_t Rows[Side + 1]; // Rows that were filled.
static uint64_t Solutions, LastRows;

/// Gives the digits of a finished board but for Empty squares; the case
/// relabels the digits and picks the squares.
static void giveDigits(unsigned Case, int Empty, int Given[Cells]) {
  uint32_t Random = 77 + Case;
  for (int Cell = 0; Cell < Cells; ++Cell) {
    int Row = Cell / Side;
    Given[Cell] =
        (int)((unsigned)(Row % Box * Box + Row / Box + Cell % Side) + Case) %
        Side;
  }
  for (int Cleared = 0; Cleared < Empty;) {
    uint32_t Cell = kernelRandom(&Random) % Cells;
    if (Given[Cell] < 0)
      continue;
    Given[Cell] = -1;
    ++Cleared;
  }
}

static void blockDigits(const int Given[Cells]) {
  for (int Cell = 0; Cell < Cells; ++Cell)
    for (int Digit = 0; Digit < Side; ++Digit)
      Blocked[Cell % Side][Digit][Cell / Side + 1] =
          Given[Cell] >= 0 && Given[Cell] != Digit;
}

/// The digits of a row as one number.
static uint64_t numberOf(const int Digits[Side]) {
  uint64_t Number = 0;
  for (int I = 0; I < Side; ++I)
    Number = Number * Side + (uint64_t)Digits[I];
  return Number;
}

/// Adds what the search of this board adds to Rows, Solutions and LastRows.
static void referenceSearch(const int Given[Cells], uint64_t Filled[Side + 1],
                            uint64_t *Found, uint64_t *Last) {
  int Grid[Cells], Cell = 0;
  unsigned InRow[Side] = {0}, InColumn[Side] = {0}, InBox[Side] = {0};
  for (int I = 0; I < Cells; ++I)
    Grid[I] = -1;
  while (Cell >= 0) {
    if (Cell == Cells) {
      ++*Found;
      *Last += numberOf(Grid + Cells - Side);
      --Cell;
    }
    int Row = Cell / Side, Column = Cell % Side;
    unsigned *Masks[] = {InRow + Row, InColumn + Column,
                         InBox + (Row / Box * Box + Column / Box)};
    int Digit = Grid[Cell];
    Grid[Cell] = -1;
    for (int I = 0; I < 3 && Digit >= 0; ++I)
      *Masks[I] ^= 1u << Digit;
    do
      ++Digit;
    while (Digit < Side &&
           ((Given[Cell] >= 0 && Given[Cell] != Digit) ||
            ((*Masks[0] | *Masks[1] | *Masks[2]) >> Digit & 1)));
    if (Digit == Side) {
      --Cell;
      continue;
    }
    for (int I = 0; I < 3; ++I)
      *Masks[I] ^= 1u << Digit;
    Grid[Cell++] = Digit;
    if (Cell % Side == 0)
      ++Filled[Cell / Side];
  }
}

static uint64_t rowsChecksum(const uint64_t Filled[Side + 1], uint64_t Found,
                             uint64_t Last) {
  uint64_t Sum = Found * 1000003 + Last;
  for (int Row = 1; Row <= Side; ++Row)
    Sum += (uint64_t)Row * Filled[Row];
  return Sum;
}

/// The main of a kernel: Search fills the rows of the board from the first one.
#define ROWS_MAIN(Name, Search)                                                \
  int main(int Argc, char **Argv) {                                            \
    long Repeats = kernelRepeats(Argc, Argv, 40);                              \
    int Empty = (int)kernelArgument(Argc, Argv, 2, 40, 1, Cells);              \
    int Given[Cases][Cells];                                                   \
    for (unsigned Case = 0; Case < Cases; ++Case)                              \
      giveDigits(Case, Empty, Given[Case]);                                    \
    for (long R = 0; R < Repeats; ++R) {                                       \
      blockDigits(Given[R % Cases]);                                           \
      kernelClobber(Blocked);                                                  \
      Search;                                                                  \
    }                                                                          \
    uint64_t Got = rowsChecksum(Rows, Solutions, LastRows), Expected = 0;      \
    for (unsigned Case = 0; Case < Cases; ++Case) {                            \
      uint64_t Filled[Side + 1] = {0}, Found = 0, Last = 0;                    \
      uint64_t Share = kernelShare(Repeats, Cases, Case);                      \
      if (!Share)                                                              \
        continue;                                                              \
      referenceSearch(Given[Case], Filled, &Found, &Last);                     \
      Expected += Share * rowsChecksum(Filled, Found, Last);                   \
    }                                                                          \
    return kernelReport(Name, Repeats, Got, Expected);                         \
  }

#endif // BENCH_STATES_ROWS_H
