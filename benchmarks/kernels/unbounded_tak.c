// class: unbounded
// sweep: argument 12,7,3 12,8,3 11,4,2 10,4,1 10,5,0
//
// Takeuchi's function in its first form, which returns y: three inner calls and
// one in tail position, arguments that no level shares. Here for several
// arguments and calls nested in a call.
//
// Reference: the closed form y if x <= y, else z if y <= z, else x.

#include "kernel.h"

static int X, Y, Z;

static int tak(int A, int B, int C) {
  KERNEL_CALL();
  if (A <= B)
    return B;
  return tak(tak(A - 1, B, C), tak(B - 1, C, A), tak(C - 1, A, B));
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 4000);
  int A = (int)kernelArgument(Argc, Argv, 2, 12, 0, 40);
  int B = (int)kernelArgument(Argc, Argv, 3, 7, 0, 40);
  int C = (int)kernelArgument(Argc, Argv, 4, 3, 0, 40);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    X = A;
    Y = B;
    Z = C;
    kernelClobber(&X);
    kernelClobber(&Y);
    kernelClobber(&Z);
    Sum += (uint64_t)tak(X, Y, Z);
  }

  int Value = A <= B ? B : B <= C ? C : A;
  return kernelReport("tak", Repeats, Sum, (uint64_t)Repeats * (uint64_t)Value);
}
