// Sixty million calls that must be tail calls need no stack.
// RUN: %compare --chained own=01234 %s
#include <stdio.h>

static void *volatile Published;
__attribute__((noinline)) static void publish(void *P) { Published = P; }

static long one(long N, long Sum);
static long other(long N, long Sum) {
  if (N <= 0)
    return Sum + 1;
  long Local = Sum;
  publish(&Local);
  __attribute__((musttail)) return one(N - 2, Sum * 3 + 1);
}
static long one(long N, long Sum) {
  if (N <= 0)
    return Sum;
  if (N % 3 == 0)
    __attribute__((musttail)) return other(N - 1, Sum + N);
  __attribute__((musttail)) return one(N - 1, Sum ^ N);
}

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

int main(int Argc, char **Argv) {
  printf("%ld %u\n", one(60000000L * Argc, Argc), own(5));
}
