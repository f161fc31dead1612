// A recursion that plain clang turns into a loop, of a depth that no stack holds, is left to it: a ring would run out of stack.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --chain-at-most squares %s
#include <stdio.h>

static unsigned squares(unsigned N) {
  unsigned Rest = N % 8;
  return N ? Rest * Rest + squares(N - 1) : 0;
}

int main(void) {
  volatile unsigned N = 20000000;
  printf("%u\n", squares(N));
}
