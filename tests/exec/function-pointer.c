// The function is called directly and through pointers, and its address stays one and the same.
// RUN: %compare --chained weigh=23 %s
#include <stdio.h>

typedef long (*Weigher)(long);

long weigh(long N);
volatile Weigher Stored = weigh;
long Visits;

long weigh(long N) {
  ++Visits;
  if (N <= 0)
    return 1;
  if (N % 3 == 0)
    return 2 * Stored(N - 1);
  return N + weigh(N - 1);
}

static long twice(Weigher W, long N) { return W(N) + W(N + 1); }

int main(void) {
  printf("%ld\n", weigh(17));
  printf("%ld\n", weigh(18));
  printf("%ld\n", twice(Stored, 9));
  printf("%d %ld\n", Stored == weigh, Visits);
}
