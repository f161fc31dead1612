// Calls of a ring's function through pointers, kept in memory and passed around the ring, do what they did.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring apply %s
#include <inlinerecursion/request.h>
#include <stdio.h>

typedef int (*Function)(unsigned, void *);

INLINERECURSION_SPECIALIZE
static int apply(unsigned N, void *Next) {
  unsigned Rest = N % 4;
  if (N == 0)
    return Next == (void *)apply ? 100 : 7;
  if (Rest == 2)
    return ((Function)Next)(N - 1, Next) + 1;
  return apply(N - 1, Next) * 2 + 1;
}

static int other(unsigned N, void *Next) { return (int)N + apply(N / 2, Next); }

static Function volatile Kept = apply;

int main(void) {
  printf("%d\n", apply(9, (void *)apply));
  printf("%d\n", apply(9, (void *)other));
  printf("%d\n", Kept(13, (void *)Kept));
  printf("%d\n", Kept(13, (void *)other));
}
