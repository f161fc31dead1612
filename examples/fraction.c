/* Evaluates a continued fraction of six partial quotients from the outside in,
 * for many values of its argument.
 *
 * Like factorial(), fraction() calls itself once and uses the result, but the
 * division keeps the compiler from turning the recursion into a loop. */

#include <stdio.h>

static const double Quotient[6] = {1.0, 3.0, 5.0, 7.0, 9.0, 11.0};
static double Argument;

static double fraction(int Level) {
  if (Level == 6)
    return 13.0;
  return Quotient[Level] + Argument / fraction(Level + 1);
}

int main(void) {
  double Sum = 0.0;
  for (int Step = 0; Step < 40000000; ++Step) {
    Argument = Step * 5e-8;
    Sum += 1.0 / fraction(0);
  }
  printf("%.9f\n", Sum);
  return 0;
}
