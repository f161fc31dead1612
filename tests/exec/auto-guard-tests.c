// Guards that switch, compare without sign or with wrapping, or test numbers that are not ordered.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring chosen --ring wraps --ring unordered --ring narrow %s
#include <math.h>
#include <stdio.h>

static int Steps;

static int chosen(int Kind, int N) {
  switch (Kind) {
  case 0:
    return N;
  case 1:
    return N * 3;
  case -7:
    return ~N;
  default:
    break;
  }
  ++Steps;
  int A = chosen(Kind / 2, N + 1);
  return chosen(Kind - Kind / 2 - 1, A ^ N) - A;
}

static unsigned wraps(unsigned N, unsigned K) {
  if (N - 1 > 40u)
    return N ^ K;
  ++Steps;
  unsigned A = wraps(N - 3, K * 5);
  return wraps(N - 7, A) * 3 + A;
}

static double unordered(double X, int N) {
  if (!(X > 1.5))
    return isnan(X) ? -3 : X;
  ++Steps;
  double A = unordered(N % 3 ? X / 2 : X - NAN, N + 1);
  return unordered(X / 3, N) - A * 2;
}

static short narrow(signed char N, unsigned char M, _Bool B) {
  if (N <= 0 || (M > 250) == B)
    return (short)(N - M);
  ++Steps;
  short A = narrow((signed char)(N - 1), (unsigned char)(M + 1), B);
  return (short)(narrow((signed char)(N - 2), (unsigned char)A, !B) * 3 - A);
}

int main(void) {
  for (int I = -20; I != 60; ++I)
    printf("%d %u %d\n", chosen(I < 0 ? -I : I, I), wraps((unsigned)I, 9),
           narrow((signed char)(I / 3), 240, I & 1));
  // Not known to the compiler, which would follow it to its end.
  volatile double Most = 500;
  printf("%.17g\n", unordered(Most, 1));
  printf("%d\n", Steps);
}
