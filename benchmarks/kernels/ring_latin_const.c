// class: ring
// sweep: START 5 6 7 8 9
//
// Counts Latin squares of order five; the argument is the cell, remainder by
// five. Here as the smallest ring that is no power of two.
// The recursion starts at a constant.

#define NAME RING_NAME("latin")
#include "ring_latin.h"
