// Recursion that counts enters its leaves at the right value: upwards and
// downwards, by tests for one value, for a range and for several values, with
// work in front of the test, and also where it is entered below that value or
// beyond the last one.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --leaf-chain down --leaf-chain up --leaf-chain several --leaf-chain wrapping --leaf-chain narrow --leaf-chain halves %s
#include <stdint.h>
#include <stdio.h>

static uint32_t Trail;

static int down(int N, int V) {
  if (N <= -2)
    return V;
  int A = down(N - 1, V + (int)(Trail % 5));
  Trail = Trail * 31 + (uint32_t)A;
  return A ^ (int)((unsigned)down(N - 1, V ^ 3) * 3u);
}

static void up(unsigned K, uint32_t X) {
  Trail = Trail * 7 + X;
  if (K == 20)
    return;
  up(K + 1, X * 2);
  Trail += K;
  up(K + 1, X * 3 + 1);
}

static long several(int N, long V) {
  int Local[2] = {N, 1};
  switch (N) {
  case 3:
    return V;
  case 1:
    return V + 1;
  default:
    break;
  }
  long A = several(N - 1, V + Local[1]);
  Trail ^= (uint32_t)A;
  Local[Trail & 1] += 2;
  long B = several(N - 1, V * 3 + Local[0]);
  Trail += (uint32_t)B;
  return A + 2 * B + several(N - 1, V - Local[1]);
}

/// Counts through the largest value.
static void wrapping(unsigned char N, uint32_t X) {
  if (N == 3)
    return;
  wrapping(N + 1, X + 1);
  Trail = Trail * 5 + X + N;
  wrapping(N + 1, X ^ 1);
}

static uint64_t narrow(uint64_t N, uint32_t X) {
  Trail += X;
  if (N < 2)
    return N;
  uint64_t A = narrow(N - 1, X * 5);
  Trail = Trail * 3 + (uint32_t)A;
  return A + 3 * narrow(N - 1, X + 1);
}

/// May return early, and its first test stands behind a store.
static void halves(int N, uint32_t X) {
  Trail = Trail * 3 + X;
  if (N == 0)
    return;
  if (X % 8 == 5)
    return;
  halves(N - 1, X * 3 + 1);
  Trail ^= X;
  halves(N - 1, X / 2);
}

int main(int Argc, char **Argv) {
  (void)Argv;
  uint32_t X = (uint32_t)Argc;
  for (int N = -4; N < 9; ++N)
    printf("%d %u\n", down(N, Argc), Trail);
  for (unsigned K = 21; K-- > 9;) {
    up(K, X);
    printf("%u\n", Trail);
  }
  printf("%ld\n", several(1, Argc));
  for (int N = 3; N < 11; ++N)
    printf("%ld %u\n", several(N, Argc), Trail);
  for (int N = 3; N > -9; --N) {
    wrapping((unsigned char)N, X);
    printf("%u\n", Trail);
  }
  for (uint64_t N = 0; N < 13; ++N)
    printf("%llu %u\n", (unsigned long long)narrow(N, X), Trail);
  for (int N = 0; N < 13; ++N) {
    halves(N, X);
    printf("%u\n", Trail);
  }
  return 0;
}
