// class: bounded
// sweep: LEVELS 6 4 5 7
//
// Walks a complete four-way tree of LEVELS + 1 levels stored in an array; the
// level is the only argument and a global carries the node. A node's result is
// its value plus the largest result of its children, and every visit increments
// the node's value. Here for the fixed fan-out: most calls end at once in a
// leaf, so the call itself is the cost.
//
// Reference: each visit adds one to all values, so a walk's result is the
// largest root-to-leaf sum, taken level by level from the leaves, plus one per
// level and walk before it.

#include "kernel.h"

#ifndef LEVELS
#define LEVELS 6
#endif

enum {
  Levels = LEVELS,
  Leaves = 1 << 2 * Levels,
  Inner = (Leaves - 1) / 3,
  Nodes = Inner + Leaves
};

static uint32_t Values[Nodes];
static unsigned Node;

static uint32_t walk(int Level) {
  KERNEL_CALL();
  uint32_t Value = Values[Node]++;
  if (Level == Levels)
    return Value;
  uint32_t Largest = 0;
  for (unsigned I = 1; I <= 4; ++I) {
    unsigned Parent = Node;
    Node = 4 * Parent + I;
    uint32_t Result = walk(Level + 1);
    Node = Parent;
    if (Result > Largest)
      Largest = Result;
  }
  return Value + Largest;
}

static void fillValues(void) {
  uint32_t Random = 99;
  for (int I = 0; I < Nodes; ++I)
    Values[I] = kernelRandom(&Random) % 1000;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 50000);
  fillValues();
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Node = 0;
    kernelClobber(Values);
    Sum += walk(0);
  }

  fillValues();
  for (int I = Inner - 1; I >= 0; --I) {
    uint32_t Largest = 0;
    for (int C = 1; C <= 4; ++C)
      if (Values[4 * I + C] > Largest)
        Largest = Values[4 * I + C];
    Values[I] += Largest;
  }
  uint64_t N = (uint64_t)Repeats;
  return kernelReport("tree", Repeats, Sum,
                      N * Values[0] + (Levels + 1) * (N * (N - 1) / 2));
}
