// Where each trip of a loop leads to a state of its own, trips that nobody knows of lead
// to the function.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --states below %s
#include <stdio.h>

static volatile unsigned Sink;

unsigned below(int N, unsigned *Board) {
  if (N <= 0)
    return Board[0];
  unsigned Sum = 0;
  if (N % 3 == 0)
    Sink = Sink * 5 + Board[N];
  else if (N % 3 == 1)
    Sink = Sink ^ (N * 99u);
  for (int I = 0; I < N; ++I) {
    Board[I] = Board[I] * 3 + I;
    Sum = Sum * 7 + below(I, Board);
  }
  return Sum + N;
}

int main(int Count, char **Arguments) {
  unsigned Board[32] = {1, 2, 3};
  printf("%u", below(6, Board));
  printf(" %u", below(Count * 8, Board));
  printf(" %u %u\n", below(7, Board), Sink);
}
