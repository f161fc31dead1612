// class: unbounded
// sweep: argument 4000 1000 1001 1002 2000 8000
//
// Walks a tree with any number of children per node, stored as first child and
// next sibling: one self call in a loop over a list. Two arguments, the node
// and its depth. Here as the usual shape of a visitor.
//
// Reference: parents have smaller numbers than their children, so one pass in
// order of number knows every depth.

#include "kernel.h"

enum { Most = 8000 };

static int Parent[Most], Child[Most], Sibling[Most];
static uint32_t Values[Most];

static uint64_t visit(int Node, uint32_t Depth) {
  KERNEL_CALL();
  uint64_t Sum = (uint64_t)Values[Node]++ * Depth;
  for (int C = Child[Node]; C >= 0; C = Sibling[C])
    Sum += visit(C, Depth + 1);
  return Sum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 64000);
  int Nodes = (int)kernelArgument(Argc, Argv, 2, 4000, 2, Most);
  uint32_t Random = 42;
  Child[0] = Sibling[0] = -1;
  for (int I = 1; I < Nodes; ++I) {
    Parent[I] = (int)(kernelRandom(&Random) % (uint32_t)I);
    Values[I] = kernelRandom(&Random) % 100;
    Child[I] = -1;
    Sibling[I] = Child[Parent[I]];
    Child[Parent[I]] = I;
  }
  uint64_t First = 0, Depths = 1;
  static uint32_t Depth[Most] = {1};
  for (int I = 1; I < Nodes; ++I) {
    Depth[I] = Depth[Parent[I]] + 1;
    Depths += Depth[I];
    First += (uint64_t)Depth[I] * Values[I];
  }

  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R)
    Sum += visit(0, 1);
  uint64_t N = (uint64_t)Repeats;
  return kernelReport("narytree", Repeats, Sum,
                      N * First + N * (N - 1) / 2 * Depths);
}
