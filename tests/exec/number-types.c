// Integers and floating-point numbers of all widths; at level 4 the budget has no room for the third function.
// RUN: %compare --chained mix=234 --chained harmonic=1234 --chained narrow=123 %s
#include <stdio.h>

static double mix(long long A, float B, double C, short D) {
  if (D <= 0)
    return A + B + C;
  return C * 0.5 + mix(A * 3 - D, B + 0.25f, C / 2 + A, D - 1);
}

static float harmonic(int N) { return N ? 1.0f / N + harmonic(N - 1) : 0.0f; }

static signed char narrow(unsigned char A, signed char B) {
  return A == 0 ? B : narrow(A - 1, B + A) - 3;
}

int main(int Argc, char **Argv) {
  printf("%.17g\n", mix(7 * Argc, 1.5f, 2.25, 23));
  printf("%.9g\n", harmonic(40 * Argc));
  printf("%d\n", narrow(200 * Argc, -7));
}
