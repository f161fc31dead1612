// class: ring
// sweep: argument 0 1 2 3 5
//
// Completes a puzzle of 8 x 8 cells with boxes of 4 x 2. The index is unsigned,
// so that its remainder by eight is bounded by eight and the ring has a copy
// for each column. Here because nothing but constants are gained: the remainder
// itself is free.
// The recursion starts at a value read at run time.

#define RING_OPAQUE_START

#define NAME RING_NAME("puzzle8")
#define INDEX unsigned
#define SIDE 8
#define BOX_WIDTH 4
#define BOX_HEIGHT 2
#define EMPTY_PERCENT 54
#define REPEATS 5000
#include "ring_puzzle.h"
