// class: bounded
//
// Subset sum of six items by depth-first search: take or leave, one self call
// in a loop of two, the item as the only argument, the running sum a global.
// Here as the narrowest tree: 64 leaves, nothing but calls and additions.
//
// Reference: the number of subsets for every sum, added item by item.

#include "kernel.h"

enum { Cases = 32 };

static int Items[6] = {3, 5, 6, 9, 11, 14};
static int Sum;
static int Target;
static uint64_t Count;

static void decide(int Item) {
  if (Item == 6) {
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
  Items[5] = 14 + (int)Case % 3;
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
    for (int I = 0; I < 6; ++I)
      for (int S = 127; S >= Items[I]; --S)
        Ways[S] += Ways[S - Items[I]];
    Expected += kernelShare(Repeats, Cases, Case) * Ways[Target];
  }
  return kernelReport("subsets", Repeats, Count, Expected);
}
