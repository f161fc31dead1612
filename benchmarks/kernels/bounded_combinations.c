// class: bounded
// sweep: PICKS 6 4 5 7
//
// Nested choices: all ways to choose PICKS of eight values with repetition, the
// picks in non-decreasing order of index, the level as the only argument.
// Here because it is PICKS nested loops written as one
// recursion; with a copy per level the loops come back.
//
// Reference: the sum of the products is the complete homogeneous symmetric
// polynomial of that degree, built value by value:
// h(k, n) = h(k, n - 1) + x(n) * h(k - 1, n).

#include "kernel.h"

#ifndef PICKS
#define PICKS 6
#endif

enum { Cases = 8, Picks = PICKS };

static uint64_t Values[8];
static int First[Picks + 1];
static uint64_t Product[Picks + 1];
static uint64_t Sum;

static void choose(int Level) {
  KERNEL_CALL();
  if (Level == Picks) {
    Sum += Product[Picks];
    return;
  }
  for (int I = First[Level]; I < 8; ++I) {
    First[Level + 1] = I;
    Product[Level + 1] = Product[Level] * Values[I];
    choose(Level + 1);
  }
}

static void fillValues(long Case) {
  for (int I = 0; I < 8; ++I)
    Values[I] = (uint64_t)(I * 5 + Case * 3) % 11 + 1;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 60000);
  for (long R = 0; R < Repeats; ++R) {
    fillValues(R % Cases);
    First[0] = 0;
    Product[0] = 1;
    kernelClobber(Values);
    choose(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillValues(Case);
    uint64_t H[Picks + 1] = {1};
    for (int I = 0; I < 8; ++I)
      for (int K = 1; K <= Picks; ++K)
        H[K] += Values[I] * H[K - 1];
    Expected += kernelShare(Repeats, Cases, Case) * H[Picks];
  }
  return kernelReport("combinations", Repeats, Sum, Expected);
}
