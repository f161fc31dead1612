// Functions that only call each other are not chained and still work, next to one that is.
// RUN: %compare --chained triangle=1234 %s
#include <stdio.h>

int odd(unsigned N);
__attribute__((noinline)) int even(unsigned N) { return N == 0 || odd(N - 1); }
__attribute__((noinline)) int odd(unsigned N) { return N && even(N - 1); }

static unsigned triangle(unsigned N) { return N ? N + triangle(N - 1) : 0; }

int main(void) {
  for (unsigned N = 0; N < 12; ++N)
    printf("%u %d %d %u\n", N, even(N), odd(N), triangle(N));
}
