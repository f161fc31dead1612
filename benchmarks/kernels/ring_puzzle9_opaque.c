// class: ring
// sweep: argument 0 1 2 3 5
//
// Completes a puzzle of 9 x 9 cells; the argument is the cell. Its remainder by
// nine is bounded too loosely for the pass, the one by three gives four copies;
// asked for, there are nine.
// Here because constants are gained for row, column and box.
// The recursion starts at a value read at run time.

#define RING_OPAQUE_START

#define NAME RING_NAME("puzzle9")
#define INDEX int
#define SIDE 9
#define BOX_WIDTH 3
#define BOX_HEIGHT 3
#define EMPTY_PERCENT 50
#define REPEATS 1800
#include "ring_puzzle.h"
