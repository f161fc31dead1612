// A variadic ring entered with constants reads its list as before.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring total %s
#include <inlinerecursion/request.h>
#include <stdarg.h>
#include <stdio.h>

INLINERECURSION_SPECIALIZE
static int total(unsigned N, ...) {
  unsigned Rest = N % 4;
  va_list List;
  va_start(List, N);
  int A = va_arg(List, int);
  double B = va_arg(List, double);
  va_end(List);
  if (N == 0)
    return A;
  return A * (int)(Rest + 1) + (int)(B * 2) + total(N - 1, A + 1, B + 0.5);
}

int main(void) {
  volatile unsigned N = 13;
  printf("%d\n", total(9, 3, 1.25));
  printf("%d\n", total(N, 3, 1.25));
  printf("%d\n", total(2, -3, 0.5));
}
