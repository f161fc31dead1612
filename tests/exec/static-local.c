// A function and its copies share one static variable.
// RUN: %compare --chained ticket=234 %s
#include <stdio.h>

static int ticket(int N) {
  static int Served;
  static int History[64];
  History[Served % 64] = N;
  ++Served;
  if (N == 0)
    return Served * 100 + History[Served / 2 % 64];
  return ticket(N - 1) - 1;
}

int main(void) {
  for (int N = 3; N < 30; ++N)
    printf("%d\n", ticket(N));
}
