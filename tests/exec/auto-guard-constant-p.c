// A question to the compiler in front of the calls is answered once for an activation.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring tally %s
#include <stdio.h>

static int Changed;

static int tally(int N, int M) {
  if (N < -3)
    return 5;
  int IsConstant = __builtin_constant_p(M);
  if (!IsConstant)
    return N * 2;
  int A = N > 0 ? tally(N - 1, M) : 3;
  int B = N > 1 ? tally(N - 3, M) : 4;
  if (!IsConstant)
    ++Changed;
  return A * 3 - B * 7;
}

int main(int argc, char **argv) {
  tally(argc + 5, 4);
  tally(argc + 3, argc);
  printf("%d\n", Changed);
}
