// class: bounded
// sweep: ITEMS 6 4 5 7
//
// Subset sum of ITEMS items by depth-first search: take or leave, one self call
// in a loop of two, the item as the only argument, the running sum a global.
// Here as the narrowest tree: two branches, nothing but calls and additions.
//
// Reference: the number of subsets for every sum, added item by item.

#include "kernel.h"

#ifndef ITEMS
#define ITEMS 6
#endif

enum { Cases = 32, Size = ITEMS };

static int Items[8] = {3, 5, 6, 9, 11, 14, 8, 4};
static int Sum;
static int Target;
static uint64_t Count;

static void decide(int Item) {
  KERNEL_CALL();
  if (Item == Size) {
    if (Sum == Target)
      ++Count;
    return;
  }
  for (int Take = 0; Take < 2; ++Take) {
    Sum += Take * Items[Item];
    decide(Item + 1);
    Sum -= Take * Items[Item];
  }
}

static void choose(long Case) {
  Target = 10 + (int)Case;
  Items[Size - 1] = 14 + (int)Case % 3;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 2200000);
  for (long R = 0; R < Repeats; ++R) {
    choose(R % Cases);
    kernelClobber(Items);
    decide(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    choose(Case);
    uint64_t Ways[128] = {1};
    for (int I = 0; I < Size; ++I)
      for (int S = 127; S >= Items[I]; --S)
        Ways[S] += Ways[S - Items[I]];
    Expected += kernelShare(Repeats, Cases, Case) * Ways[Target];
  }
  return kernelReport("subsets", Repeats, Count, Expected);
}
