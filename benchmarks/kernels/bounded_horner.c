// class: bounded
// sweep: DEGREE 6 3 4 5 7
//
// Horner's rule by recursion, degree DEGREE: one self call, no loop, and only
// a few multiplications of work per chain, with the degree as the only
// argument and the coefficients in a global table. Here because the calls cost
// as much as the arithmetic; it is the smallest body that gains.
//
// The product is reduced modulo a prime, so the call is not in a form that tail
// recursion elimination could turn into a loop.
//
// Reference: the powers of the point summed term by term.

#include "kernel.h"

#ifndef DEGREE
#define DEGREE 6
#endif

enum { Last = DEGREE, Cases = 1024, Prime = 65521 };

static uint32_t Coefficients[Last + 1];
static uint32_t Point;

static uint32_t evaluate(int Degree) {
  KERNEL_CALL();
  if (Degree == Last)
    return Coefficients[Last];
  return (Coefficients[Degree] + Point * evaluate(Degree + 1)) % Prime;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 30000000);
  for (uint32_t I = 0; I <= Last; ++I)
    Coefficients[I] = 1000 + I * I * 77;
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Point = (uint32_t)(R % Cases) * 61 + 2;
    kernelClobber(Coefficients);
    Sum += evaluate(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t X = (uint64_t)Case * 61 + 2, Power = 1, Value = 0;
    for (int I = 0; I <= Last; ++I) {
      Value = (Value + Coefficients[I] * Power) % Prime;
      Power = Power * X % Prime;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Value;
  }
  return kernelReport("horner", Repeats, Sum, Expected);
}
