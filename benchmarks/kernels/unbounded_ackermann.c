// class: unbounded
// sweep: argument 5 4 6 7
//
// Ackermann's function for a first argument up to three. Here for a call that
// is the argument of a tail call, and for depths of several hundred.
//
// Reference: A(2, n) = 2n + 3 and A(3, n) = 2^(n + 3) - 3.

#include "kernel.h"

enum { Cases = 4 };

static uint32_t First, Second;

static uint32_t ackermann(uint32_t M, uint32_t N) {
  KERNEL_CALL();
  if (M == 0)
    return N + 1;
  if (N == 0)
    return ackermann(M - 1, 1);
  return ackermann(M - 1, ackermann(M, N - 1));
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 1300);
  int Size = (int)kernelArgument(Argc, Argv, 2, 5, 1, 9);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    uint32_t Case = (uint32_t)(R % Cases);
    First = Case ? 3 : 2;
    Second = Case ? (uint32_t)Size - 1 + Case : 100;
    kernelClobber(&First);
    kernelClobber(&Second);
    Sum += ackermann(First, Second);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) *
                (Case ? ((uint64_t)1 << (Size + 2 + Case)) - 3 : 203);
  return kernelReport("ackermann", Repeats, Sum, Expected);
}
