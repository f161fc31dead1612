// class: unbounded
// sweep: argument 8192 4096 6000 8191 8193 10000
//
// Merge sort that counts inversions. Here for two calls before the work, with
// the result of both added up.
//
// Reference: inversions counted with a tree of partial sums over the values.

#include "kernel.h"

enum { Cases = 4, Longest = 16384, Values = 4096 };

static uint32_t Numbers[Longest], Buffer[Longest];
static int Length;

static uint64_t sortRange(int Low, int High) {
  KERNEL_CALL();
  if (High - Low < 2)
    return 0;
  int Middle = Low + (High - Low) / 2;
  uint64_t Inversions = sortRange(Low, Middle) + sortRange(Middle, High);
  int A = Low, B = Middle;
  for (int I = Low; I < High; ++I) {
    if (A < Middle && (B == High || Numbers[A] <= Numbers[B])) {
      Buffer[I] = Numbers[A++];
    } else {
      Inversions += (uint64_t)(Middle - A);
      Buffer[I] = Numbers[B++];
    }
  }
  for (int I = Low; I < High; ++I)
    Numbers[I] = Buffer[I];
  return Inversions;
}

static void fillNumbers(long Case) {
  uint32_t Random = 5 + (uint32_t)Case;
  for (int I = 0; I < Length; ++I)
    Numbers[I] = kernelRandom(&Random) % Values;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 800);
  Length = (int)kernelArgument(Argc, Argv, 2, 8192, 2, Longest);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillNumbers(R % Cases);
    kernelClobber(Numbers);
    Sum += sortRange(0, Length);
    for (int I = 1; I < Length; ++I)
      if (Numbers[I - 1] > Numbers[I])
        Sum = 0;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillNumbers(Case);
    uint32_t Tree[Values + 1] = {0};
    uint64_t Inversions = 0;
    for (uint32_t I = 0; I < (uint32_t)Length; ++I) {
      uint32_t NotGreater = 0;
      for (uint32_t P = Numbers[I] + 1; P > 0; P &= P - 1)
        NotGreater += Tree[P];
      Inversions += I - NotGreater;
      for (uint32_t P = Numbers[I] + 1; P <= Values; P += P & (0 - P))
        ++Tree[P];
    }
    Expected += kernelShare(Repeats, Cases, Case) * Inversions;
  }
  return kernelReport("mergesort", Repeats, Sum, Expected);
}
