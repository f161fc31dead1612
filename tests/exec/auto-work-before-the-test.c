// Work that a recursion does before it looks whether there is anything to recurse
// into is done once, in the same order, whoever does it: with counters, values
// that are used later on, variables of its own, and tests at the head of a loop.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --split visits --split values --split children --split local --split several --ring visits.recurse.rest --ring values.recurse.rest --ring children.recurse.rest --ring local.recurse.rest --ring several.recurse.rest --leaf-chain build %s
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

typedef struct Node {
  uint32_t Value;
  int Count;
  struct Node *Left, *Right;
  struct Node *Child, *Sibling;
} Node;

static uint32_t Trail;

static void visits(Node *N) {
  Trail = Trail * 31 + 7;
  if (!N)
    return;
  visits(N->Left);
  Trail = Trail * 5 + N->Value;
  visits(N->Right);
}

static uint32_t values(Node *N, uint32_t Depth) {
  uint32_t Before = Trail;
  Trail = Trail * 3 + Depth;
  if (!N)
    return Before;
  uint32_t Left = values(N->Left, Depth + 1);
  Trail ^= Before;
  return Left * 3 - values(N->Right, Depth + 2) + Before;
}

static uint64_t children(Node *N, uint32_t Depth) {
  uint64_t Sum = (uint64_t)N->Value++ * Depth;
  for (Node *C = N->Child; C; C = C->Sibling)
    Sum = Sum * 3 + children(C, Depth + 1);
  return Sum;
}

static void keep(uint32_t *Slot, uint32_t Value) __attribute__((noinline));
static void keep(uint32_t *Slot, uint32_t Value) { *Slot += Value; }

static uint32_t local(Node *N, uint32_t Seed) {
  {
    volatile uint32_t Own[2] = {Seed, 1};
    Trail += Own[Seed & 1];
  }
  if (!N)
    return Trail;
  uint32_t Sum = 0;
  keep(&Sum, local(N->Left, Seed * 5));
  Sum += N->Value;
  keep(&Sum, local(N->Right, Seed + 3));
  return Sum;
}

static uint32_t several(Node *N, uint32_t Limit) {
  ++Trail;
  if (!N)
    return 1;
  Trail ^= N->Value;
  if (Trail % 16 == Limit)
    return 2;
  uint32_t A = several(N->Left, Limit);
  uint32_t B = several(N->Right, A % 16);
  return A ^ (B << 1);
}

static uint32_t Random = 1;

static Node *build(int Depth) {
  Random = Random * 1664525 + 1013904223;
  if (Depth == 0 || Random >> 29 == 0)
    return NULL;
  Node *N = calloc(1, sizeof(Node));
  N->Value = Random >> 8;
  N->Left = build(Depth - 1);
  N->Right = build(Depth - 1);
  N->Child = N->Left;
  if (N->Left)
    N->Left->Sibling = N->Right;
  return N;
}

int main(void) {
  for (int Depth = 0; Depth < 12; ++Depth) {
    Node *N = build(Depth);
    visits(N);
    printf("%u\n", Trail);
    printf("%u %u\n", values(N, 1), Trail);
    if (N)
      printf("%llu %u\n", (unsigned long long)children(N, 1), N->Value);
    printf("%u %u\n", local(N, (uint32_t)Depth), Trail);
    printf("%u %u\n", several(N, 5), Trail);
  }
  return 0;
}
