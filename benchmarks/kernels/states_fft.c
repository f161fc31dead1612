// class: states
// sweep: argument 4 2 3 6
//
// A Fourier transform of 1024 numbers modulo 998244353, by recursion over the
// even and the odd ones. Length and stride are the state: eleven pairs. Here for
// two numbers that always change together. The input is how many sequences go
// in turn.
//
// Reference: every seventh entry of the result by the definition.

#include "kernel.h"

enum { Length = 1024, MaxCases = 8, Modulus = 998244353, Root = 3 };

static uint32_t Powers[Length]; // Of a root of unity of order Length.
static uint32_t Input[MaxCases][Length], Output[Length];

static uint32_t times(uint32_t A, uint32_t B) {
  return (uint32_t)((uint64_t)A * B % Modulus);
}

static uint32_t power(uint32_t Base, uint32_t Exponent) {
  uint32_t Value = 1;
  for (; Exponent; Exponent >>= 1, Base = times(Base, Base))
    if (Exponent & 1)
      Value = times(Value, Base);
  return Value;
}

static void transform(uint32_t *To, const uint32_t *From, int Count,
                      int Stride) {
  KERNEL_CALL();
  if (Count == 1) {
    *To = *From;
    return;
  }
  int Half = Count / 2;
  transform(To, From, Half, 2 * Stride);
  transform(To + Half, From + Stride, Half, 2 * Stride);
  for (int I = 0; I < Half; ++I) {
    uint32_t Even = To[I], Odd = times(To[I + Half], Powers[I * Stride]);
    uint32_t Sum = Even + Odd, Difference = Even + Modulus - Odd;
    To[I] = Sum >= Modulus ? Sum - Modulus : Sum;
    To[I + Half] = Difference >= Modulus ? Difference - Modulus : Difference;
  }
}

/// Entry K of the transform by the definition.
static uint32_t entryOf(const uint32_t *From, uint32_t K) {
  uint32_t Sum = 0;
  for (uint32_t I = 0; I < Length; ++I)
    Sum = (Sum + times(From[I], Powers[I * K % Length])) % Modulus;
  return Sum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 12000);
  long Cases = kernelArgument(Argc, Argv, 2, 4, 1, MaxCases);
  uint32_t Step = power(Root, (Modulus - 1) / Length), Random = 31;
  Powers[0] = 1;
  for (int I = 1; I < Length; ++I)
    Powers[I] = times(Powers[I - 1], Step);
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I < Length; ++I)
      Input[Case][I] = kernelRandom(&Random);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    kernelClobber(Input);
    transform(Output, Input[R % Cases], Length, 1);
    for (uint32_t I = 0; I < Length; I += 7)
      Sum += Output[I];
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    for (uint32_t I = 0; I < Length; I += 7)
      Expected += kernelShare(Repeats, Cases, Case) * entryOf(Input[Case], I);
  return kernelReport("fft", Repeats, Sum, Expected);
}
