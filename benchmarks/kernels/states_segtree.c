// class: states
// sweep: argument 40 4 400 4000
//
// A segment tree over 4096 numbers: sums of ranges, and changes of single
// numbers, each entered with node 1 and the range 0 to 4095. Here for constants
// that do not pay: 8191 states, and which of them come depends on the question.
// The input is how long the ranges are that are asked for.
//
// Reference: the numbers in an array, with a sum over all of them beside it.

#include "kernel.h"

enum { Count = 4096, Cases = 4, Questions = 64 };

static uint32_t Sums[2 * Count];

static uint32_t sumOf(int Node, int Low, int High, int From, int To) {
  KERNEL_CALL();
  if (From <= Low && High <= To)
    return Sums[Node];
  int Middle = (Low + High) / 2;
  uint32_t Sum = 0;
  if (From <= Middle)
    Sum += sumOf(2 * Node, Low, Middle, From, To);
  if (To > Middle)
    Sum += sumOf(2 * Node + 1, Middle + 1, High, From, To);
  return Sum;
}

static void change(int Node, int Low, int High, int Place, uint32_t Value) {
  KERNEL_CALL();
  if (Low == High) {
    Sums[Node] = Value;
    return;
  }
  int Middle = (Low + High) / 2;
  if (Place <= Middle)
    change(2 * Node, Low, Middle, Place, Value);
  else
    change(2 * Node + 1, Middle + 1, High, Place, Value);
  Sums[Node] = Sums[2 * Node] + Sums[2 * Node + 1];
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 40000);
  int Length = (int)kernelArgument(Argc, Argv, 2, 40, 1, Count);
  uint64_t Sum = 0, Expected = 0;
  for (long R = 0; R < Repeats; ++R) {
    uint32_t Random = 60 + (uint32_t)(R % Cases);
    kernelClobber(Sums);
    for (int I = 0; I < Questions; ++I) {
      int Place = (int)(kernelRandom(&Random) % Count);
      change(1, 0, Count - 1, Place, kernelRandom(&Random));
      int From = (int)(kernelRandom(&Random) % (uint32_t)(Count - Length + 1));
      Sum += sumOf(1, 0, Count - 1, From, From + Length - 1);
    }
  }

  // The numbers stay as the last round of a case left them; from the second
  // turn of all cases on, every turn is like the one before.
  static uint32_t Numbers[Count];
  uint64_t Turn[Cases] = {0};
  for (long R = 0; R < Repeats; ++R) {
    if (R < 2 * Cases) {
      uint32_t Random = 60 + (uint32_t)(R % Cases);
      uint64_t Answers = 0;
      for (int I = 0; I < Questions; ++I) {
        uint32_t Place = kernelRandom(&Random) % Count;
        Numbers[Place] = kernelRandom(&Random);
        uint32_t From = kernelRandom(&Random) % (uint32_t)(Count - Length + 1);
        uint32_t Answer = 0;
        for (uint32_t J = From; J < From + (uint32_t)Length; ++J)
          Answer += Numbers[J];
        Answers += Answer;
      }
      Turn[R % Cases] = Answers;
    }
    Expected += Turn[R % Cases];
  }
  return kernelReport("segtree", Repeats, Sum, Expected);
}
