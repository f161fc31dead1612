// class: unbounded
// sweep: argument 30 31 32 33 34
//
// Fibonacci numbers by double recursion. Here as the call benchmark everyone
// knows: two calls, one addition, depth by argument.
//
// Reference: a loop.

#include "kernel.h"

static int Index;

static uint32_t fib(int N) {
  KERNEL_CALL();
  return N < 2 ? (uint32_t)N : fib(N - 1) + fib(N - 2);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 120);
  int Size = (int)kernelArgument(Argc, Argv, 2, 30, 1, 45);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Index = Size;
    kernelClobber(&Index);
    Sum += fib(Index);
  }

  uint64_t A = 0, B = 1;
  for (int I = 0; I < Size; ++I) {
    uint64_t C = A + B;
    A = B;
    B = C;
  }
  return kernelReport("fib", Repeats, Sum, (uint64_t)Repeats * A);
}
