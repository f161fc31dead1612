// class: bounded
// sweep: ITEMS 7 5 6 8
//
// All permutations of ITEMS items by swapping, with the position as the only
// argument: as many activations deep, one self call inside a loop. Here because
// swap recursion is the textbook case of a constant-depth search whose trip
// counts fold once every level is its own copy.
//
// Every permutation's weighted sum competes for smallest and largest; a plain
// total would not do, because it is linear in the items and a compiler may add
// up the coefficients of many permutations beforehand.
//
// Reference: by the rearrangement inequality the items in rising order give the
// largest sum under rising weights, and in falling order the smallest.

#include "kernel.h"

#ifndef ITEMS
#define ITEMS 7
#endif

enum { Cases = 8, Size = ITEMS };

static uint64_t Items[Size];
static uint64_t Smallest, Largest;

static void permute(int Position) {
  KERNEL_CALL();
  if (Position == Size - 1) {
    uint64_t Sum = 0;
    for (int I = 0; I < Size; ++I)
      Sum += (uint64_t)(I + 1) * Items[I];
    if (Sum < Smallest)
      Smallest = Sum;
    if (Sum > Largest)
      Largest = Sum;
    return;
  }
  for (int I = Position; I < Size; ++I) {
    uint64_t Item = Items[I];
    Items[I] = Items[Position];
    Items[Position] = Item;
    permute(Position + 1);
    Items[Position] = Items[I];
    Items[I] = Item;
  }
}

static void fillItems(long Case) {
  for (int I = 0; I < Size; ++I)
    Items[I] = (uint64_t)(I * I * 13 + Case * 7 + 5) % 31;
}

static int compareItems(const void *A, const void *B) {
  uint64_t X = *(const uint64_t *)A, Y = *(const uint64_t *)B;
  return (X > Y) - (X < Y);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 10000);
  uint64_t Total = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillItems(R % Cases);
    Smallest = UINT64_MAX;
    Largest = 0;
    kernelClobber(Items);
    permute(0);
    Total += Smallest + 1000 * Largest;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillItems(Case);
    qsort(Items, Size, sizeof(Items[0]), compareItems);
    uint64_t Rising = 0, Falling = 0;
    for (int I = 0; I < Size; ++I) {
      Rising += (uint64_t)(I + 1) * Items[I];
      Falling += (uint64_t)(Size - I) * Items[I];
    }
    Expected += kernelShare(Repeats, Cases, Case) * (Falling + 1000 * Rising);
  }
  return kernelReport("permutations", Repeats, Total, Expected);
}
