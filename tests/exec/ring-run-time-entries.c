// A ring entered with values known only at run time, and with one constant among them, does what the recursion does.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring mix %s
#include <inlinerecursion/request.h>
#include <stdio.h>

INLINERECURSION_SPECIALIZE
static unsigned mix(unsigned N, unsigned Sum, unsigned Weight) {
  unsigned Rest = N % 4;
  Sum += Rest * Weight;
  if (N == 0)
    return Sum;
  if (Rest == 3)
    Sum ^= mix(N / 2, Sum, Weight + 1);
  return mix(N - 1, Sum, Weight);
}

int main(int Count, char **Arguments) {
  volatile unsigned Start = 23;
  for (unsigned I = 0; I < 9; ++I)
    printf("%u\n", mix(Start + I, I, Start));
  printf("%u\n", mix(Start, 7, 3));
  printf("%u\n", mix((unsigned)Count * 11, 7, Start));
}
