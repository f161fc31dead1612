// Structs large and small as arguments and results.
// RUN: %compare --chained power=234 %s
#include <stdio.h>

struct Matrix {
  long At[2][2];
};

struct Matrix multiply(struct Matrix A, struct Matrix B) {
  struct Matrix R;
  for (int I = 0; I < 2; ++I)
    for (int J = 0; J < 2; ++J)
      R.At[I][J] = A.At[I][0] * B.At[0][J] + A.At[I][1] * B.At[1][J];
  return R;
}

struct Matrix power(struct Matrix Base, int N) {
  if (N == 0)
    return (struct Matrix){{{1, 0}, {0, 1}}};
  return multiply(Base, power(Base, N - 1));
}

int main(void) {
  struct Matrix R = power((struct Matrix){{{1, 1}, {1, 0}}}, 60);
  printf("%ld %ld %ld %ld\n", R.At[0][0], R.At[0][1], R.At[1][0], R.At[1][1]);
}
