// class: ring
// sweep: argument 0 1 2 4 5 6
//
// Counts domino tilings of a board seven wide; the argument is the square,
// remainder by seven. Here for three self calls outside any loop, one of which
// the last column drops. The recursion starts at a value read at run time.

#define RING_OPAQUE_START

#define NAME RING_NAME("domino")
#include "ring_domino.h"
