// The address of a ring's function stays one address, inside the ring, in its specialisations and outside.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring same %s
#include <inlinerecursion/request.h>
#include <stdio.h>

static const void *First;

INLINERECURSION_SPECIALIZE
static int same(unsigned N, const void *Me) {
  unsigned Rest = N % 8;
  int Equal = Me == (const void *)same && First == (const void *)same;
  if (N == 0)
    return Equal;
  return same(N - 1, (const void *)same) + Equal * (int)(Rest + 1);
}

int main(void) {
  First = (const void *)same;
  volatile unsigned N = 21;
  printf("%d\n", same(12, First));
  printf("%d\n", same(N, (const void *)same));
  printf("%d\n", same(5, (const void *)0));
}
