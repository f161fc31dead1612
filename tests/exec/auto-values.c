// Arguments and results of every size and class go through guards and rings.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring wide --ring pair --ring big --ring mixed %s
#include <stdio.h>

typedef __int128 Wide;
typedef struct {
  long A;
  double B;
} Pair;
typedef struct {
  long A[5];
} Big;

static volatile int Seen;

static Wide wide(Wide N, int K) {
  if (K <= 0)
    return N;
  Seen = K;
  Wide A = wide(N * 12345678901234567LL, K - 1);
  return wide(A ^ N, K - 2) - A;
}

static Pair pair(int K, Pair P) {
  if (K <= 0)
    return P;
  Seen = K;
  P.A += K;
  Pair Q = pair(K - 1, P);
  Q.B = Q.B * 0.5 + (double)(Q.A % 17);
  Pair R = pair(K - 2, Q);
  R.A ^= Q.A;
  return R;
}

static Big big(int K) {
  if (K <= 0)
    return (Big){{1, 2, 3, 4, K}};
  Seen = K;
  Big X = big(K - 1), Y = big(K - 2);
  X.A[0] = X.A[0] * 3 - Y.A[4];
  X.A[2] = X.A[4] ^ Y.A[2];
  X.A[4] += Y.A[0];
  return X;
}

static float mixed(int A, float B, double C, long D, float E, char F, long G,
                   long H, long I, double J) {
  if (A <= 0)
    return B + (float)(C + E + J) + (float)(D + F + G - H + I);
  Seen = A;
  float X = mixed(A - 1, E, B, G, (float)J, (char)D, H, I, D, C);
  return mixed(A - 2, X, C, D, B, F, I, G, H, J) - X / 2;
}

int main(void) {
  Wide W = wide(7, 12);
  printf("%llx %llx\n", (unsigned long long)W, (unsigned long long)(W >> 64));
  Pair P = pair(13, (Pair){1, 0.25});
  printf("%ld %.17g\n", P.A, P.B);
  Big B = big(14);
  printf("%ld %ld %ld\n", B.A[0], B.A[2], B.A[4]);
  printf("%.9g\n", mixed(11, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}
