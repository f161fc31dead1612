// class: states
// sweep: argument 12 9 10 11 14
//
// Sums over all ways down a triangle of numbers to a depth that is the input.
// The depth counts up from 0. Here for a constant that does not pay: nothing
// says where it ends, and it decides only which row is read.
//
// Reference: row by row from the bottom.

#include "kernel.h"

enum { MaxDepth = 24, Cases = 4 };

static uint32_t Triangle[Cases][MaxDepth + 1][MaxDepth + 1];
static uint32_t (*Rows)[MaxDepth + 1];
static int Limit;

static uint32_t walk(int Depth, int Place) {
  KERNEL_CALL();
  uint32_t Here = Rows[Depth][Place];
  if (Depth == Limit)
    return Here;
  return (Here ^ walk(Depth + 1, Place)) + 3 * walk(Depth + 1, Place + 1);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000);
  Limit = (int)kernelArgument(Argc, Argv, 2, 12, 1, MaxDepth);
  uint32_t Random = 8;
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I <= MaxDepth; ++I)
      for (int J = 0; J <= I; ++J)
        Triangle[Case][I][J] = kernelRandom(&Random);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Rows = Triangle[R % Cases];
    kernelClobber(Triangle);
    Sum += walk(0, 0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint32_t Below[MaxDepth + 1];
    for (int J = 0; J <= Limit; ++J)
      Below[J] = Triangle[Case][Limit][J];
    for (int I = Limit - 1; I >= 0; --I)
      for (int J = 0; J <= I; ++J)
        Below[J] = (Triangle[Case][I][J] ^ Below[J]) + 3 * Below[J + 1];
    Expected += kernelShare(Repeats, Cases, Case) * Below[0];
  }
  return kernelReport("depth-unknown", Repeats, Sum, Expected);
}
