// class: ring
// sweep: START 0 1 2 4 12
//
// Counts knight's tours on a board of five by five; the argument is the square,
// remainder by five. Here because the next argument differs from move to move,
// so the remainder of the next activation does not follow from this one's. The
// recursion starts at a constant.

#define NAME RING_NAME("knight")
#include "ring_knight.h"
