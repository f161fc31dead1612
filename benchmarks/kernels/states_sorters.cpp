// class: states
// sweep: argument 4000 1000 2000 8000
//
// A quicksort and a merge sort that hand a comparison along, a pointer to a
// function, each entered with two of them. Here for a state that never changes
// on the way, and for calls through a pointer that each copy knows.
//
// Reference: the multiset is counted value by value, as in unbounded_quicksort.

#include "kernel.h"

namespace {

constexpr int Cases = 4, Values = 4096, MaxLength = 1000000;

using Compare = bool (*)(uint32_t, uint32_t);

bool isLess(uint32_t A, uint32_t B) { return A < B; }
bool isMore(uint32_t A, uint32_t B) { return A > B; }

uint32_t Numbers[MaxLength], Spare[MaxLength];

void quickSort(uint32_t *Low, uint32_t *High, Compare Before) {
  KERNEL_CALL();
  if (High - Low < 2)
    return;
  uint32_t Pivot = Low[(High - Low) / 2];
  uint32_t *Left = Low, *Right = High - 1;
  while (Left <= Right) {
    while (Before(*Left, Pivot))
      ++Left;
    while (Before(Pivot, *Right))
      --Right;
    if (Left <= Right) {
      uint32_t Kept = *Left;
      *Left++ = *Right;
      *Right-- = Kept;
    }
  }
  quickSort(Low, Right + 1, Before);
  quickSort(Left, High, Before);
}

void mergeSort(uint32_t *From, uint32_t *Room, int Length, Compare Before) {
  KERNEL_CALL();
  if (Length < 2)
    return;
  int Half = Length / 2;
  mergeSort(From, Room, Half, Before);
  mergeSort(From + Half, Room, Length - Half, Before);
  for (int I = 0; I < Half; ++I)
    Room[I] = From[I];
  int Left = 0, Right = Half, Next = 0;
  while (Left < Half)
    From[Next++] = Right < Length && Before(From[Right], Room[Left])
                       ? From[Right++]
                       : Room[Left++];
}

void fillNumbers(int Length, long Case) {
  uint32_t Random = 23 + static_cast<uint32_t>(Case);
  for (int I = 0; I < Length; ++I)
    Numbers[I] = kernelRandom(&Random) % Values;
}

} // namespace

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 800);
  int Length = (int)kernelArgument(Argc, Argv, 2, 4000, 1, MaxLength);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillNumbers(Length, R % Cases);
    kernelClobber(Numbers);
    switch (R % Cases) {
    case 0:
      quickSort(Numbers, Numbers + Length, isLess);
      break;
    case 1:
      quickSort(Numbers, Numbers + Length, isMore);
      break;
    case 2:
      mergeSort(Numbers, Spare, Length, isLess);
      break;
    default:
      mergeSort(Numbers, Spare, Length, isMore);
    }
    uint32_t Checksum = 0;
    for (int I = 0; I < Length; ++I)
      Checksum = Checksum * 31 + Numbers[I];
    Sum += Checksum;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillNumbers(Length, Case);
    static int Counts[Values];
    for (int &Count : Counts)
      Count = 0;
    for (int I = 0; I < Length; ++I)
      ++Counts[Numbers[I]];
    uint32_t Checksum = 0;
    for (uint32_t I = 0; I < Values; ++I) {
      uint32_t Value = Case % 2 ? Values - 1 - I : I;
      for (int J = 0; J < Counts[Value]; ++J)
        Checksum = Checksum * 31 + Value;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Checksum;
  }
  return kernelReport("sorters", Repeats, Sum, Expected);
}
