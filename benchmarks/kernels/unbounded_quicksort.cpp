// class: unbounded
// sweep: argument 20000 5000 10000 10001 10002 15000
//
// Quicksort as a function template over iterators, both halves by recursion, no
// cut-off for short ranges. Here for a recursion whose work per level shrinks
// until the calls are all there is.
//
// Reference: the multiset is counted value by value, which gives the sorted
// sequence's checksum without sorting.

#include "kernel.h"
#include <utility>
#include <vector>

namespace {

constexpr int Cases = 4, Values = 4096;

template <typename Iterator> void quickSort(Iterator First, Iterator Last) {
  KERNEL_CALL();
  if (Last - First < 2)
    return;
  auto Pivot = First[(Last - First) / 2];
  auto Low = First - First, High = Last - First - 1;
  while (Low <= High) {
    while (First[Low] < Pivot)
      ++Low;
    while (Pivot < First[High])
      --High;
    if (Low <= High)
      std::swap(First[Low++], First[High--]);
  }
  quickSort(First, First + (High + 1));
  quickSort(First + Low, Last);
}

void fillNumbers(std::vector<uint32_t> &Numbers, long Case) {
  uint32_t Random = 17 + static_cast<uint32_t>(Case);
  for (uint32_t &Number : Numbers)
    Number = kernelRandom(&Random) % Values;
}

} // namespace

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 400);
  int Length = (int)kernelArgument(Argc, Argv, 2, 20000, 1, 1000000);
  std::vector<uint32_t> Numbers(static_cast<size_t>(Length));
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillNumbers(Numbers, R % Cases);
    kernelClobber(Numbers.data());
    quickSort(Numbers.data(), Numbers.data() + Length);
    uint32_t Checksum = 0;
    for (uint32_t Number : Numbers)
      Checksum = Checksum * 31 + Number;
    Sum += Checksum;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillNumbers(Numbers, Case);
    std::vector<int> Counts(Values);
    for (uint32_t Number : Numbers)
      ++Counts[Number];
    uint32_t Checksum = 0;
    for (uint32_t Value = 0; Value < Values; ++Value)
      for (int I = 0; I < Counts[Value]; ++I)
        Checksum = Checksum * 31 + Value;
    Expected += kernelShare(Repeats, Cases, Case) * Checksum;
  }
  return kernelReport("quicksort", Repeats, Sum, Expected);
}
