// Plain recursion on one integer, from a loop and with several depths.
// RUN: %compare --chained factorial=1234 %s
#include <stdio.h>

static unsigned long long factorial(unsigned N) {
  return N < 2 ? 1 : N * factorial(N - 1);
}

int main(void) {
  for (unsigned I = 0; I < 21; ++I)
    printf("%u! = %llu\n", I, factorial(I));
}
