// Calls that have their tests in front of them make a ring without a guard.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring walk --ring height %s
#include <stdio.h>

enum { Count = 3000 };
struct Node {
  struct Node *Left, *Right;
  unsigned Value;
};
static struct Node Nodes[Count];
static unsigned Trail;

static void walk(struct Node *N) {
  if (N->Left)
    walk(N->Left);
  Trail = Trail * 31 + N->Value;
  if (N->Right)
    walk(N->Right);
  Trail ^= N->Value << 3;
}

static int height(struct Node *N) {
  int A = N->Left ? height(N->Left) : 0;
  int B = N->Right ? height(N->Right) : 0;
  Trail += (unsigned)A;
  return (A > B ? A : B) + 1;
}

int main(void) {
  unsigned Random = 1;
  for (int I = 0; I < Count; ++I) {
    Random = Random * 1664525u + 1013904223u;
    Nodes[I].Value = Random >> 8;
    struct Node **Place = I ? &Nodes[0].Left : 0;
    unsigned Way = Random >> 4;
    for (struct Node *N = Nodes; I && *(Place = Way & 1 ? &N->Left : &N->Right);
         N = *Place)
      Way = Way >> 1 ^ (unsigned)I * 2654435761u;
    if (Place)
      *Place = &Nodes[I];
    if (I % 500 == 0 || I < 9) {
      walk(Nodes);
      printf("%d %d %u\n", I, height(Nodes), Trail);
    }
  }
}
