// class: states
// sweep: argument 40 36 38 42
//
// The search of states_rows.c as a member function, the sums in the object.
// Here for the object's address, which is handed along beside the row.
//
// The board and the reference are in states_rows.h.

#include "states_rows.h"

namespace {

class Search {
public:
  void run() { fillRow(1); }

private:
  void fillRow(int Row) {
    KERNEL_CALL();
#define FILL_ROW(Next) fillRow(Next)
#include "states_rows_nest.h"
  }
};

} // namespace

ROWS_MAIN("states-rows", Search().run())
