// A ring is entered anew at every step that leads through another function; with 800 bytes in each of its copies it would run out of stack where the function does not.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --no-ring f %s
#include <stdio.h>

static unsigned g(int N, unsigned Sum);

__attribute__((noinline)) static void use(unsigned *Work) {
  for (int I = 0; I < 200; ++I)
    Work[I] = (unsigned)I;
}

static unsigned f(int N, unsigned Sum) {
  unsigned Rest = (unsigned)N % 8u, Work[200];
  use(Work);
  if (N <= 0)
    return Sum;
  if (Sum % 1024 == 77)
    return f(N - 1, Sum + 1) * 3 + Work[Rest];
  return g(N - 1, Sum + Work[Rest]);
}

static unsigned g(int N, unsigned Sum) { return f(N, Sum) + 1; }

int main(void) {
  volatile int N = 6000;
  printf("%u\n", f(N, 0));
}
