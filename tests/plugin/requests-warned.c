// Who asks for a ring and does not get one is warned, without asking for remarks, and told
// which rule refused; who gets one, or has not asked, is not.
// RUN: %clang_with_pass -I %S/../../include -O3 -S -emit-llvm -o /dev/null %s 2>&1 | FileCheck %s --implicit-check-not=warning:
// RUN: not %clang_with_pass -I %S/../../include -O3 -Werror -S -emit-llvm -o /dev/null %s
// RUN: %clang_with_pass -I %S/../../include -O3 -Werror -Wno-pass-failed -S -emit-llvm -o /dev/null %s
// RUN: %clang_with_pass -I %S/../../include -O3 -Werror -DGRANTED -S -emit-llvm -o /dev/null %s
#include <inlinerecursion/request.h>
extern int Sum;

INLINERECURSION_SPECIALIZE void granted(int N) {
  int Rest = N % 4;
  if (N <= 0)
    return;
  Sum ^= Rest;
  granted(N - 1);
  Sum += 1;
}

// Which the pass refuses, and which is built in its place.
INLINERECURSION_SPECIALIZE void granted9(unsigned N) {
  unsigned Rest = N % 9;
  if (N > 100)
    return;
  Sum ^= Rest;
  granted9(N + 1);
  Sum += 1;
}

void notAsked(int N) {
  if (N <= 0)
    return;
  notAsked(N / 2);
  Sum += N;
  notAsked(N / 3);
}

#ifndef GRANTED
// CHECK-DAG: warning: the ring of copies that 'noRemainder' asks for is not built: its entry block takes no remainder of an argument by a constant from 2 to 64; begin it with one, or start it with constants and hand on what follows from them [-Wpass-failed=inlinerecursion]
INLINERECURSION_SPECIALIZE void noRemainder(int N) {
  if (N <= 0)
    return;
  noRemainder(N - 1);
  Sum += 1;
}

// CHECK-DAG: warning: the ring of copies that 'tooManyValues' asks for is not built: its entry block takes no remainder of an argument by a constant from 2 to 64;
INLINERECURSION_SPECIALIZE void tooManyValues(int N) {
  int Rest = N % 90;
  if (N <= 0)
    return;
  tooManyValues(N - 1);
  Sum += Rest;
}

// CHECK-DAG: warning: the ring of copies that 'noStep' asks for is not built: not all of its self calls step argument 2, of which it takes the remainder by 9, by a constant; hand on that argument and a constant, or start it with constants [-Wpass-failed=inlinerecursion]
INLINERECURSION_SPECIALIZE void noStep(int K, int N) {
  int Rest = N % 9;
  if (N <= 0)
    return;
  noStep(K, N - 1);
  Sum += Rest;
  noStep(K, N / 2);
}

// CHECK-DAG: warning: the ring of copies that 'large' asks for is not built: request withdrawn, a ring of 64 copies would have {{[0-9]+}} instructions, more than 20000; raise -inlinerecursion-max-ring-size [-Wpass-failed=inlinerecursion]
#define TEN(X) X X X X X X X X X X
INLINERECURSION_SPECIALIZE void large(int N) {
  int Rest = N % 64;
  if (N <= 0)
    return;
  TEN(TEN(Sum = Sum * 3 / (Sum + Rest);))
  large(N - 1);
  Sum += Rest;
}

struct Box { int Slots[40]; };
// CHECK-DAG: warning: the ring of copies that 'byValue' asks for is not built: an argument is copied to the stack by every call; pass it by pointer [-Wpass-failed=inlinerecursion]
INLINERECURSION_SPECIALIZE void byValue(int N, struct Box B) {
  int Rest = N % 9;
  if (N <= 0)
    return;
  byValue(N - 1, B);
  Sum += B.Slots[Rest];
}

// CHECK-DAG: warning: the ring of copies that 'variable' asks for is not built: it takes variable arguments, which cannot be handed on; take a va_list in place of them [-Wpass-failed=inlinerecursion]
INLINERECURSION_SPECIALIZE void variable(int N, ...) {
  int Rest = N % 9;
  if (N <= 0)
    return;
  variable(N - 1, Rest);
  Sum += Rest;
}

// CHECK-DAG: warning: the ring of copies that 'sum' asks for is not built: request withdrawn, without a ring the recursion becomes a loop that needs no stack
INLINERECURSION_SPECIALIZE int sum(int N) {
  int Rest = N % 4;
  return N <= 0 ? Rest : Rest + sum(N - 1);
}

// CHECK-DAG: warning: the ring of copies that 'weak' asks for is not built: another definition may take its place
INLINERECURSION_SPECIALIZE __attribute__((weak)) void weak(int N) {
  int Rest = N % 4;
  if (N <= 0)
    return;
  Sum ^= Rest;
  weak(N - 1);
}
#endif
