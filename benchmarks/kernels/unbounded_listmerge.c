// class: unbounded
// sweep: argument 1000 500 999 1001 2000
//
// Merges two sorted lists, link by link; the argument is the length of each.
// Here for two calls of which an activation makes one, with a store behind it
// that keeps either from being a loop.
//
// Reference: both lists' values sorted by counting.

#include "kernel.h"

enum { Cases = 4, Longest = 4096, Gap = 32, Values = Longest * Gap };

typedef struct Link {
  uint32_t Value;
  struct Link *Next;
} Link;

static Link Links[2][Longest];
static int Length;

static Link *merge(Link *A, Link *B) {
  KERNEL_CALL();
  if (!A)
    return B;
  if (!B)
    return A;
  if (A->Value <= B->Value) {
    A->Next = merge(A->Next, B);
    return A;
  }
  B->Next = merge(A, B->Next);
  return B;
}

/// Links the lists anew; their values are those of Case.
static void fillLists(long Case) {
  for (int L = 0; L < 2; ++L) {
    uint32_t Random = 7 * (uint32_t)Case + (uint32_t)L, Value = 0;
    for (int I = 0; I < Length; ++I) {
      // Runs of neighbours, longer with every case.
      Value += kernelRandom(&Random) % (Case + 2) ? 1 : Gap / 2;
      Links[L][I].Value = Value;
      Links[L][I].Next = I + 1 < Length ? &Links[L][I + 1] : NULL;
    }
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 24000);
  Length = (int)kernelArgument(Argc, Argv, 2, 1000, 1, Longest);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillLists(R % Cases);
    kernelClobber(Links);
    uint64_t Place = 0;
    for (Link *L = merge(Links[0], Links[1]); L; L = L->Next)
      Sum += ++Place * L->Value;
  }

  static uint32_t Count[Values];
  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillLists(Case);
    for (int V = 0; V < Values; ++V)
      Count[V] = 0;
    for (int I = 0; I < Length; ++I) {
      ++Count[Links[0][I].Value];
      ++Count[Links[1][I].Value];
    }
    uint64_t Place = 0, Weighted = 0;
    for (int V = 0; V < Values; ++V)
      while (Count[V]-- != 0)
        Weighted += ++Place * (uint64_t)V;
    Expected += kernelShare(Repeats, Cases, Case) * Weighted;
  }
  return kernelReport("listmerge", Repeats, Sum, Expected);
}
