// A test of a variable's address is about the variable that is used then.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring sum --split aligned --ring aligned.recurse.rest %s
#include <stdint.h>
#include <stdio.h>

static int Misaligned;

__attribute__((noinline)) static void use(char *P, int N) {
  Misaligned += ((uintptr_t)P & 63) != 0;
  *(volatile char *)P = (char)N;
}

int aligned(int N, int K) {
  char *Buffer = __builtin_alloca(24);
  if (((uintptr_t)Buffer & 63) != 0)
    return K;
  use(Buffer, N);
  if (N <= 0)
    return K;
  return aligned(N - 1, K + 1) * 3 - aligned(N - 2, K ^ 5);
}

static int sum(int N, int K) {
  if (N <= K)
    return N;
  return sum(N - 1, K + 1) * 3 - sum(N / 2, K);
}

int main(void) {
  printf("%d\n", sum(20, 1));
  for (int I = 0; I != 64; ++I) {
    char *volatile Offset = __builtin_alloca(16 * I + 16);
    *Offset = 1;
    aligned(8, I);
  }
  printf("%d\n", Misaligned);
}
