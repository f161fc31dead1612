// class: unbounded
//
// Takeuchi's function in its first form, which returns y: three inner calls and
// one in tail position, arguments that no level shares. Here for several
// arguments and calls nested in a call.
//
// Reference: the closed form y if x <= y, else z if y <= z, else x.

#include "kernel.h"

enum { Cases = 3 };

static int X, Y, Z;

static int tak(int A, int B, int C) {
  if (A <= B)
    return B;
  return tak(tak(A - 1, B, C), tak(B - 1, C, A), tak(C - 1, A, B));
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 8000);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    X = 9 + (int)(R % Cases);
    Y = 4;
    Z = (int)(R % Cases);
    kernelClobber(&X);
    Sum += (uint64_t)tak(X, Y, Z);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    int A = 9 + (int)Case, B = 4, C = (int)Case;
    int Value = A <= B ? B : B <= C ? C : A;
    Expected += kernelShare(Repeats, Cases, Case) * (uint64_t)Value;
  }
  return kernelReport("tak", Repeats, Sum, Expected);
}
