// class: unbounded
// sweep: argument 20 14 16 17 18 19
//
// Counts the subsets of up to twenty items with a given sum; item and rest are
// the arguments, and a rest below zero ends a branch. Here as the two-argument
// counterpart of the bounded subset kernel.
//
// Reference: the number of subsets for every sum, added item by item.

#include "kernel.h"

enum { Cases = 16, Items = 20, Largest = 256 };

static int Weights[Items];
static int Target;

static uint32_t count(int Item, int Rest) {
  KERNEL_CALL();
  if (Rest == 0)
    return 1;
  if (Rest < 0 || Item == Items)
    return 0;
  return count(Item + 1, Rest - Weights[Item]) + count(Item + 1, Rest);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 12000);
  int First = Items - (int)kernelArgument(Argc, Argv, 2, Items, 1, Items);
  uint64_t Sum = 0, Expected = 0;
  for (int I = 0; I < Items; ++I)
    Weights[I] = 3 + I * 7 % 19;
  for (long R = 0; R < Repeats; ++R) {
    Target = 30 + 2 * (int)(R % Cases);
    kernelClobber(&Target);
    Sum += count(First, Target);
  }

  uint64_t Ways[Largest] = {1};
  for (int I = First; I < Items; ++I)
    for (int S = Largest - 1; S >= Weights[I]; --S)
      Ways[S] += Ways[S - Weights[I]];
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * Ways[30 + 2 * Case];
  return kernelReport("subsetsum", Repeats, Sum, Expected);
}
