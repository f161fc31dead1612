// What self calls bring is added up in the same way when it is handed on to them:
// with values that are there before a call or after it, in loops, where paths
// meet, by other operations than addition, beyond the largest number, and where
// calls change what is added.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --passed-sum nodes --passed-sum after --passed-sum children --passed-sum paths --passed-sum mixed --passed-sum product --passed-sum wraps --passed-sum nested --ring nodes --ring after --ring paths --ring mixed --ring product --ring wraps --ring nested --ring children --ring compared %s
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

typedef struct Node {
  uint32_t Value;
  struct Node *Left, *Right, *Sibling;
} Node;

static uint32_t Trail;

static uint32_t nodes(Node *N, uint32_t Key) {
  if (!N)
    return 0;
  return (N->Value % 8 == Key) + nodes(N->Left, Key) + nodes(N->Right, Key);
}

static uint32_t after(Node *N) {
  if (!N)
    return 1;
  uint32_t Sum = after(N->Left);
  Trail = Trail * 31 + N->Value;
  Sum += Trail;
  Sum += after(N->Right);
  Trail = Trail * 17 + 1;
  return Sum + Trail;
}

static uint64_t children(Node *N, uint32_t Depth) {
  if (!N)
    return Depth;
  uint64_t Sum = N->Value;
  for (Node *C = N->Left; C; C = C->Sibling)
    Sum += children(C, Depth + 1);
  return Sum;
}

static uint32_t paths(Node *N, uint32_t Left) {
  if (!N || Left == 0)
    return Left;
  uint32_t Sum = 5;
  switch (N->Value % 4) {
  case 0:
    Sum = paths(N->Left, Left - 1);
    break;
  case 1:
    Sum += paths(N->Right, Left - 1) + paths(N->Left, Left - 1);
    break;
  case 2:
    Trail ^= N->Value;
    break;
  default:
    Sum = 9 + paths(N->Right, Left - 1);
  }
  return Sum + N->Value;
}

static uint32_t mixed(Node *N) {
  if (!N)
    return 3;
  Trail += N->Value;
  uint32_t Sum = N->Value ^ mixed(N->Right);
  Trail *= 3;
  return Sum ^ mixed(N->Left) ^ Trail;
}

static uint32_t product(Node *N) {
  if (!N)
    return 3;
  uint32_t P = product(N->Left);
  Trail ^= P & 0;
  return P * (N->Value | 1) * product(N->Right);
}

static int wraps(Node *N, int Sign) {
  if (!N)
    return Sign > 0 ? 2147483647 : -2147483647;
  // Any two of these are within range, in this order.
  return wraps(N->Left, Sign) + wraps(N->Left, -Sign);
}

static uint32_t nested(Node *N, uint32_t From) {
  if (!N)
    return From;
  uint32_t Sum = nested(N->Left, From + 1);
  return Sum + nested(N->Right, N->Value % 16);
}

// What a call brings decides something, so it cannot wait for the end.
static uint32_t compared(Node *N) {
  if (!N)
    return 1;
  uint32_t Left = compared(N->Left);
  Trail += Left;
  return (Left > 9 ? Left / 2 : Left) + compared(N->Right);
}

static uint32_t Random = 1;

__attribute__((noinline)) static Node *build(int Depth) {
  Random = Random * 1664525 + 1013904223;
  if (Depth == 0 || Random >> 29 == 0)
    return NULL;
  Node *N = calloc(1, sizeof(Node));
  N->Value = Random >> 8;
  N->Left = build(Depth - 1);
  N->Right = build(Depth - 1);
  if (N->Left)
    N->Left->Sibling = N->Right;
  return N;
}

int main(void) {
  for (int Depth = 0; Depth < 12; ++Depth) {
    Node *N = build(Depth);
    for (uint32_t Key = 0; Key < 8; ++Key)
      printf("%u ", nodes(N, Key));
    printf("%u %u\n", after(N), Trail);
    printf("%llu\n", (unsigned long long)children(N, 1));
    printf("%u %u\n", paths(N, 9), Trail);
    printf("%u %u\n", mixed(N), Trail);
    printf("%u\n", product(N));
    printf("%d\n", wraps(N, 1));
    printf("%u\n", nested(N, 2));
    printf("%u %u\n", compared(N), Trail);
  }
  return 0;
}
