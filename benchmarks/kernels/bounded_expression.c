// class: bounded
// sweep: LEVELS 6 4 5 7
//
// Evaluates a complete binary expression tree of LEVELS levels of operators
// over its leaves, in heap order. The level is the only argument; the node is a
// global, and the two operands are evaluated by one call in a loop of two.
// Here because a loop of constant trip count around the
// call is what the optimizer unrolls after inlining.
//
// Reference: the heap array evaluated from its last operator to the first.

#include "kernel.h"

#ifndef LEVELS
#define LEVELS 6
#endif

enum { Cases = 16, Levels = LEVELS, Leaves = 1 << Levels };

static unsigned char Operators[Leaves];
static uint32_t Constants[Leaves];
static unsigned Node;

static uint32_t apply(unsigned char Operator, uint32_t A, uint32_t B) {
  switch (Operator) {
  case 0:
    return A + B;
  case 1:
    return A - B;
  case 2:
    return A * B;
  default:
    return A ^ B;
  }
}

static uint32_t evaluate(int Level) {
  KERNEL_CALL();
  if (Level == Levels)
    return Constants[Node - Leaves];
  uint32_t Operands[2];
  for (unsigned I = 0; I < 2; ++I) {
    Node = 2 * Node + I;
    Operands[I] = evaluate(Level + 1);
    Node /= 2;
  }
  return apply(Operators[Node], Operands[0], Operands[1]);
}

static void buildTree(void) {
  uint32_t Random = 12345;
  for (int I = 0; I < Leaves; ++I) {
    Operators[I] = kernelRandom(&Random) % 4;
    Constants[I] = kernelRandom(&Random);
  }
}

static void varyTree(long Case) {
  for (uint32_t I = 0; I < 4; ++I)
    Constants[I * (Leaves / 4)] = (uint32_t)Case * 977 + I;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 800000);
  buildTree();
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    varyTree(R % Cases);
    Node = 1;
    kernelClobber(Constants);
    kernelClobber(Operators);
    Sum += evaluate(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    varyTree(Case);
    uint32_t Heap[2 * Leaves];
    for (int I = 2 * Leaves - 1; I > 0; --I)
      Heap[I] = I >= Leaves ? Constants[I - Leaves]
                            : apply(Operators[I], Heap[2 * I], Heap[2 * I + 1]);
    Expected += kernelShare(Repeats, Cases, Case) * Heap[1];
  }
  return kernelReport("expression", Repeats, Sum, Expected);
}
