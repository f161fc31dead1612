// class: bounded
// sweep: EXPONENT 125 31 63 96 127 128
//
// Power by repeated squaring modulo a prime with the constant exponent
// EXPONENT: 125, 62, 31, 15, 7, 3, 1 are seven activations. Here because the
// argument is halved rather than counted, and its parity folds at every level.
//
// Reference: multiplications one after the other.

#include "kernel.h"

#ifndef EXPONENT
#define EXPONENT 125
#endif

enum { Cases = 512, Exponent0 = EXPONENT, Prime = 1000003 };

static uint64_t Base;

static uint64_t power(unsigned Exponent) {
  KERNEL_CALL();
  if (Exponent == 1)
    return Base;
  uint64_t Half = power(Exponent / 2);
  uint64_t Square = Half * Half % Prime;
  return Exponent % 2 ? Square * Base % Prime : Square;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000000);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Base = (uint64_t)(R % Cases) * 1931 + 2;
    kernelClobber(&Base);
    Sum += power(Exponent0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t X = (uint64_t)Case * 1931 + 2, Value = X;
    for (int I = 1; I < Exponent0; ++I)
      Value = Value * X % Prime;
    Expected += kernelShare(Repeats, Cases, Case) * Value;
  }
  return kernelReport("power", Repeats, Sum, Expected);
}
