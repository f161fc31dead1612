// class: unbounded
//
// Fibonacci numbers by double recursion. Here as the call benchmark everyone
// knows: two calls, one addition, depth by argument.
//
// Reference: a loop.

#include "kernel.h"

enum { Cases = 4 };

static int Index;

static uint32_t fib(int N) {
  return N < 2 ? (uint32_t)N : fib(N - 1) + fib(N - 2);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 6400);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Index = 21 + (int)(R % Cases);
    kernelClobber(&Index);
    Sum += fib(Index);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t A = 0, B = 1;
    for (int I = 0; I < 21 + Case; ++I) {
      uint64_t C = A + B;
      A = B;
      B = C;
    }
    Expected += kernelShare(Repeats, Cases, Case) * A;
  }
  return kernelReport("fib", Repeats, Sum, Expected);
}
