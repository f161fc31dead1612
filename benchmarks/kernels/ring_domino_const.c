// class: ring
// sweep: START 0 1 2 4 5 6
//
// Counts domino tilings of a board seven wide; the argument is the square,
// remainder by seven. Here for three self calls outside any loop, one of which
// the last column drops. The recursion starts at a constant.

#define NAME RING_NAME("domino")
#include "ring_domino.h"
