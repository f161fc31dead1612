// class: ring
// sweep: START 1000 999 998 997 996 995 994
//
// A state machine by recursion; the argument counts the steps down, its
// remainder by seven is the state. Here for a switch on the remainder, which
// every copy of the ring replaces by one case. The recursion starts at a
// constant.

#define NAME RING_NAME("machine")
#include "ring_machine.h"
