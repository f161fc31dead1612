// class: states
// sweep: argument 40 36 38 42
//
// Fills a board of 9 x 9 squares row by row: one function of nine nested loops,
// one for each square of the row. The row is the only argument, from 1 to 9,
// and decides which counts change and how long the loops over the rows below
// are. Here for a large function of few values, each of which leaves other
// code.
//
// The board and the reference are in states_rows.h.

#include "states_rows.h"

static void fillRow(int Row) {
  KERNEL_CALL();
#define FILL_ROW(Next) fillRow(Next)
#include "states_rows_nest.h"
}

ROWS_MAIN("states-rows", fillRow(1))
