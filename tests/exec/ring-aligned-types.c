// Copies that stand for one remainder each do what the recursion does with values that wrap, with wide ones, and in a loop.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --aligned wrap --aligned wide --aligned loop %s
#include <inlinerecursion/request.h>
#include <limits.h>
#include <stdio.h>

static unsigned Table[8];

INLINERECURSION_SPECIALIZE
static unsigned wrap(unsigned N, int Depth) {
  unsigned Rest = N % 8;
  int Signed = (int)N % 8;
  Table[Rest] += (unsigned)Signed + 1;
  if (Depth == 0)
    return Rest;
  return wrap(N + 3, Depth - 1) * 3 + wrap(N - 1, Depth - 1) + Rest;
}

INLINERECURSION_SPECIALIZE
static unsigned wide(long long N, int Depth) {
  long long Rest = N % 7;
  Table[Rest < 0 ? -Rest : Rest] ^= (unsigned)N;
  if (Depth == 0)
    return (unsigned)Rest;
  return wide(N - 2, Depth - 1) * 5 + (unsigned)Rest;
}

// A loop, and to stay one.
INLINERECURSION_SPECIALIZE
static unsigned loop(int N, unsigned Sum) {
  int Rest = N % 6;
  if (N == 0)
    return Sum;
  return loop(N - 1, Rest == 4 ? Sum * 3 : Sum + (unsigned)Rest);
}

int main() {
  static const int Starts[] = {0, 1, 2, 3, 5, 17, -1, -2, -9, INT_MIN + 20};
  volatile int Depth = 6;
  volatile unsigned Many = 3000000;
  for (unsigned I = 0; I < sizeof(Starts) / sizeof(*Starts); ++I) {
    volatile int Start = Starts[I];
    printf("%u\n", wrap((unsigned)Start, Depth));
    printf("%u\n", wide(Start, Depth + 3));
    printf("%u\n", wide((long long)Start * 0x100000001, Depth + 3));
    for (unsigned K = 0; K < 8; ++K)
      printf("%u ", Table[K]);
    printf("\n");
  }
  printf("%u\n", loop((int)Many, 1));
}
