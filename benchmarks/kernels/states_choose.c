// class: states
// sweep: argument 5 3 4 7
//
// All choices of 6 of 12 things, as the sum of their products with weights. How
// many things are left and how many are still to choose are the state: 55
// pairs. Here for two constants that go down on two ways, and meet again. The
// input is how many sets of things go in turn.
//
// Reference: the elementary symmetric polynomial, by multiplying out (1 + w x).

#include "kernel.h"

enum { Things = 12, Chosen = 6, MaxCases = 8 };

static uint32_t Weights[MaxCases][Things];
static const uint32_t *Weight;

static uint32_t choose(int Left, int Wanted) {
  KERNEL_CALL();
  if (Wanted == 0)
    return 1;
  if (Left < Wanted)
    return 0;
  return choose(Left - 1, Wanted) +
         Weight[Left - 1] * choose(Left - 1, Wanted - 1);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 40000);
  long Cases = kernelArgument(Argc, Argv, 2, 5, 1, MaxCases);
  uint32_t Random = 1;
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I < Things; ++I)
      Weights[Case][I] = kernelRandom(&Random);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Weight = Weights[R % Cases];
    kernelClobber(Weights);
    Sum += choose(Things, Chosen);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint32_t Polynomial[Things + 1] = {1};
    for (int I = 0; I < Things; ++I)
      for (int K = I + 1; K > 0; --K)
        Polynomial[K] += Polynomial[K - 1] * Weights[Case][I];
    Expected += kernelShare(Repeats, Cases, Case) * Polynomial[Chosen];
  }
  return kernelReport("choose", Repeats, Sum, Expected);
}
