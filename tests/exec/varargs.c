// A variadic function that recurses with fewer arguments, and one that reads its list on the way.
// RUN: %compare --chained total=34 %s
#include <stdarg.h>
#include <stdio.h>

int total(int N, ...) {
  va_list List;
  va_start(List, N);
  int A = N > 0 ? va_arg(List, int) : 0;
  double B = N > 0 ? va_arg(List, double) : 0;
  va_end(List);
  if (N == 0)
    return 0;
  return A + (int)(B * 2) + total(N - 1, A + 1, B + 0.5);
}

int main(void) { printf("%d\n", total(20, 3, 1.25)); }
