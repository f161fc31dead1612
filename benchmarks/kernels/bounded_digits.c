// class: bounded
//
// Digit recursion: counts the six-digit strings divisible by eleven with a
// given sum of digits. The place is the only argument; the sum and the
// alternating sum are globals. Here because the sign of a digit depends on the
// parity of the argument and folds per copy.
//
// Reference: a loop over the multiples of eleven below a million.

#include "kernel.h"

enum { Cases = 16 };

static int Sum, Alternating, Target;
static uint64_t Count;

static void appendDigit(int Place) {
  if (Place == 6) {
    if (Sum == Target && Alternating % 11 == 0)
      ++Count;
    return;
  }
  for (int Digit = 0; Digit < 10; ++Digit) {
    if (Sum + Digit > Target)
      break;
    int Signed = Place % 2 ? -Digit : Digit;
    Sum += Digit;
    Alternating += Signed;
    appendDigit(Place + 1);
    Sum -= Digit;
    Alternating -= Signed;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 400);
  for (long R = 0; R < Repeats; ++R) {
    Target = 18 + (int)(R % Cases);
    kernelClobber(&Target);
    appendDigit(0);
  }

  uint64_t Numbers[64] = {0}, Expected = 0;
  for (int N = 0; N < 1000000; N += 11) {
    int S = 0;
    for (int Rest = N; Rest; Rest /= 10)
      S += Rest % 10;
    ++Numbers[S];
  }
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * Numbers[18 + Case];
  return kernelReport("digits", Repeats, Count, Expected);
}
