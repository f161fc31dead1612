// Every activation of a ring owns its copy of a structure passed by value, whatever constant address it came from.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring change %s
#include <inlinerecursion/request.h>
#include <stdio.h>

struct Wide {
  long Values[6];
};

static struct Wide Shared = {{1, 2, 3, 4, 5, 6}};

INLINERECURSION_SPECIALIZE
static struct Wide change(struct Wide W, unsigned N) {
  unsigned Rest = N % 4;
  W.Values[Rest] += N;
  Shared.Values[5] ^= W.Values[Rest];
  if (N == 0)
    return W;
  struct Wide Inner = change(W, N - 1);
  W.Values[4] += Inner.Values[Rest] - Inner.Values[4];
  return W;
}

int main(void) {
  struct Wide A = change(Shared, 10);
  struct Wide B = change(A, 3);
  for (int I = 0; I < 6; ++I)
    printf("%ld %ld %ld\n", A.Values[I], B.Values[I], Shared.Values[I]);
}
