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

void notAsked(int N) {
  if (N <= 0)
    return;
  notAsked(N / 2);
  Sum += N;
  notAsked(N / 3);
}

#ifndef GRANTED
// CHECK-DAG: warning: the ring of copies that 'noRemainder' asks for is not built: its entry block takes no remainder of an argument by a constant that is known to have at most 10 values; begin it with one by 2, 4 or 8 [-Wpass-failed=inlinerecursion]
INLINERECURSION_SPECIALIZE void noRemainder(int N) {
  if (N <= 0)
    return;
  noRemainder(N - 1);
  Sum += 1;
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
