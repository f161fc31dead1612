// Jumps through a static table of labels stay within one activation.
// RUN: %compare --chained own=01234 %s
#include <stdio.h>

static long steps(int N) {
  static const void *const Table[] = {&&One, &&Two, &&Three};
  long Result = N;
  if (N == 0)
    return 0;
  long Below = steps(N - 1);
  goto *Table[N % 3];
One:
  return Result + 1 + Below;
Two:
  return (Result + 10) * 2 + Below;
Three:
  return (Result + 100) * 3 + Below;
}

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

int main(void) { printf("%ld %u\n", steps(6), own(5)); }
