// A ring that the pass refuses, for a remainder whose bound it does not know, does what the recursion does: by any divisor, up and down, from negative values, and where values wrap.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --aligned s9 --aligned s10 --aligned s11 --aligned s13 --aligned s25 --aligned u3 --aligned u5 --aligned u6 --aligned u7 --aligned u9 --aligned u10 --aligned u11 --aligned u13 --aligned u16 --aligned u25 --aligned wide %s
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.wrap --flag=-fwrapv --flag=-DWRAPS --aligned s5 --aligned s9 --aligned s10 --aligned s11 --aligned s13 --aligned s25 %s
#include <inlinerecursion/request.h>
#include <limits.h>
#include <stdio.h>

static unsigned Table[64];

// Two self calls, and a third one below.
#define SEARCH(Name, Type, Divisor, First, Second, Third)                      \
  INLINERECURSION_SPECIALIZE                                                   \
  static unsigned Name(Type N, int Depth) {                                    \
    Type Rest = N % Divisor;                                                   \
    Table[(int)Rest + 30] += (unsigned)N + 1;                                  \
    if (Depth == 0)                                                            \
      return (unsigned)Rest;                                                   \
    unsigned Sum = Name(N + (First), Depth - 1);                               \
    if (Sum & 1)                                                               \
      Sum = Sum * 5 + Name(N + (Second), Depth - 1);                           \
    Table[Sum % 30] ^= Sum;                                                    \
    if (Third && Sum & 2)                                                      \
      Sum = Sum * 3 ^ Name(N + (Third), Depth - 1);                            \
    return Sum * 7 + (unsigned)Rest;                                           \
  }

SEARCH(s5, int, 5, 1, -1, 2)
SEARCH(s9, int, 9, 1, 2, -1)
SEARCH(s10, int, 10, -1, -2, 0)
SEARCH(s11, int, 11, 2, 1, 0)
SEARCH(s13, int, 13, -1, 1, -1)
SEARCH(s25, int, 25, 1, 30, 0)
#ifndef WRAPS
SEARCH(u3, unsigned, 3, 1, 2, -1)
SEARCH(u5, unsigned, 5, 1, 1, 0)
SEARCH(u6, unsigned, 6, -1, -2, 0)
SEARCH(u7, unsigned, 7, 2, -1, 0)
SEARCH(u9, unsigned, 9, 1, 2, -1)
SEARCH(u10, unsigned, 10, 1, 2, 0)
SEARCH(u11, unsigned, 11, -1, 1, 0)
SEARCH(u13, unsigned, 13, 2, 5, 0)
SEARCH(u16, unsigned, 16, 1, -1, 2)
SEARCH(u25, unsigned, 25, 1, 2, 0)
SEARCH(wide, unsigned long long, 9, 1, 2, 0)

// One self call, behind which something is left to do.
INLINERECURSION_SPECIALIZE
static unsigned path(unsigned N, int Depth) {
  unsigned Rest = N % 9;
  if (Depth == 0)
    return N;
  unsigned Sum = path(N + 1, Depth - 1);
  Table[Rest] += Sum;
  return Sum ^ Rest;
}
#endif

int main() {
  static const int Starts[] = {0,  1,  2,  3,   8,   9,           10,
                               17, -1, -2, -9,  -26, INT_MIN + 400, 1000000007,
#ifdef WRAPS
                               INT_MAX, INT_MAX - 1, INT_MAX - 7, INT_MIN,
                               INT_MIN + 1
#endif
  };
  volatile int Depth = 9;
  for (unsigned I = 0; I < sizeof(Starts) / sizeof(*Starts); ++I) {
    volatile int Start = Starts[I];
    printf("%u ", s5(Start, Depth));
    printf("%u %u ", s9(Start, Depth), s10(Start, Depth));
    printf("%u %u ", s11(Start, Depth), s13(Start, Depth));
    printf("%u\n", s25(Start, Depth));
  }
#ifndef WRAPS
  static const unsigned Edges[] = {0, 1, 5, 9, 100, UINT_MAX, UINT_MAX - 1,
                                   UINT_MAX - 8, INT_MAX, INT_MAX - 1u,
                                   INT_MAX - 6u, INT_MAX + 1u, INT_MAX + 2u};
  for (unsigned I = 0; I < sizeof(Edges) / sizeof(*Edges); ++I) {
    volatile unsigned Start = Edges[I];
    printf("%u %u ", u3(Start, Depth), u5(Start, Depth));
    printf("%u %u ", u6(Start, Depth), u7(Start, Depth));
    printf("%u %u ", u9(Start, Depth), u10(Start, Depth));
    printf("%u %u ", u11(Start, Depth), u13(Start, Depth));
    printf("%u %u ", u16(Start, Depth), u25(Start, Depth));
    printf("%u %u ", wide(Start, Depth), wide(Start * 0x100000001u, Depth));
    printf("%u ", wide(ULLONG_MAX - (Start & 7), Depth));
    printf("%u\n", wide(LLONG_MAX - (Start & 7ull), Depth));
    printf("%u\n", path(Start, Depth * 5));
  }
#endif
  for (unsigned K = 0; K < 64; ++K)
    printf("%u ", Table[K]);
  printf("\n");
}
