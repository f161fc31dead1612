// A function that calls itself twice is chained at no level and still works, next to one that is.
// RUN: %compare --chained digits=1234 %s
#include <stdio.h>

static int fibonacci(int N) {
  return N < 2 ? N : fibonacci(N - 1) + fibonacci(N - 2);
}

static int digits(int N) { return N < 10 ? 1 : 1 + digits(N / 10); }

int main(void) {
  for (int N = 0; N < 19; ++N)
    printf("%d %d\n", fibonacci(N), digits(fibonacci(N)));
}
