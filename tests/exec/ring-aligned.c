// Copies that stand for one remainder each do what the recursion does: from wherever it is entered, below zero too, and by whatever steps.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --aligned down --aligned up --aligned both %s
#include <inlinerecursion/request.h>
#include <limits.h>
#include <stdio.h>

static unsigned Table[8];
static volatile int Fuel;

// Runs on below zero until its fuel is spent.
INLINERECURSION_SPECIALIZE
static unsigned down(int N) {
  int Rest = N % 3;
  unsigned Before = Table[Rest + 2];
  if (--Fuel < 0)
    return Before;
  switch (Rest) {
  case 0:
    Table[2] += 5;
    break;
  case 1:
    Table[3] ^= Before + 1;
    break;
  case 2:
    Table[4] -= Table[2];
    break;
  default:
    Table[Rest + 2] += 7;
  }
  return down(N - 1) * 31 + Before;
}

INLINERECURSION_SPECIALIZE
static unsigned up(int N, int End) {
  unsigned Rest = (unsigned)(N % 5);
  Table[Rest % 8] += (unsigned)N;
  if (N >= End)
    return Rest;
  unsigned Sum = up(N + 1, End);
  if (Table[1] & 1)
    Sum ^= up(N + 2, End - 3);
  return Sum * 3 + Rest;
}

// Up, down and on the spot.
INLINERECURSION_SPECIALIZE
static unsigned both(int N, int Depth) {
  int Rest = N % 4, Half = N % 2;
  Table[Rest + 3] += (unsigned)Half + 2;
  if (Depth == 0)
    return (unsigned)Rest;
  unsigned Sum = both(N - 3, Depth - 1);
  Sum = Sum * 5 + both(N + 5, Depth - 1);
  return Sum * 7 + both(N, Depth - 1) + (unsigned)(N % 3);
}

int main() {
  static const int Starts[] = {0, 1, 2, 3, 5, 17, -1, -2, -9, INT_MIN + 20};
  volatile int Depth = 5, Last = INT_MAX;
  for (unsigned I = 0; I < sizeof(Starts) / sizeof(*Starts); ++I) {
    volatile int Start = Starts[I];
    Fuel = 20;
    printf("%u\n", down(Start));
    printf("%u\n", up(Start, Start + 9));
    printf("%u\n", both(Start, Depth));
    for (unsigned K = 0; K < 8; ++K)
      printf("%u ", Table[K]);
    printf("\n");
  }
  printf("%u\n", up(Last - 6, Last));
}
