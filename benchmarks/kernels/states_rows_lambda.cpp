// class: states
// sweep: argument 40 36 38 42
//
// The search of states_rows.c as a generic lambda that is handed itself. Here
// for closures, whose address goes along beside the row.
//
// The board and the reference are in states_rows.h.

#include "states_rows.h"

namespace {

void fillBoard() {
  auto FillRow = [](auto &Self, int Row) -> void {
    KERNEL_CALL();
#define FILL_ROW(Next) Self(Self, Next)
#include "states_rows_nest.h"
  };
  FillRow(FillRow, 1);
}

} // namespace

ROWS_MAIN("states-rows", fillBoard())
