// class: bounded
// sweep: PLACES 6 4 5 7
//
// Digit recursion: counts the strings of PLACES digits divisible by eleven with
// a given sum of digits. The place is the only argument; the sum and the
// alternating sum are globals. Here because the sign of a digit depends on the
// parity of the argument and folds per copy.
//
// Reference: a loop over the multiples of eleven with so many digits.

#include "kernel.h"

#ifndef PLACES
#define PLACES 6
#endif

enum { Cases = 16, Places = PLACES };

static int Sum, Alternating, Target;
static uint64_t Count;

static void appendDigit(int Place) {
  KERNEL_CALL();
  if (Place == Places) {
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
  int End = 1;
  for (int Place = 0; Place < Places; ++Place)
    End *= 10;
  for (int N = 0; N < End; N += 11) {
    int S = 0;
    for (int Rest = N; Rest; Rest /= 10)
      S += Rest % 10;
    ++Numbers[S];
  }
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * Numbers[18 + Case];
  return kernelReport("digits", Repeats, Count, Expected);
}
