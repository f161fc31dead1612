// A recursion that accumulates stays a loop where calls that step alike are on another path.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring climb %s
#include <stdio.h>

static unsigned climb(unsigned N) {
  if (N < 2)
    return N;
  unsigned Sum = 0;
  if (N < 5) {
    Sum = climb(N - 1) * 3;
    if (Sum & 1)
      Sum ^= climb(N - 2) * 5;
  }
  return Sum + climb(N - 1);
}

int main(int argc, char **argv) { printf("%u\n", climb(20000000 + argc)); }
