// Pointers to the function, other functions between two levels, and calls from outside find the function as it was.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring left --ring right --ring visit %s
#include <stdio.h>

static int Count;
int right(int N, int K);

int left(int N, int K) {
  if (N <= 0)
    return K;
  ++Count;
  int A = left(N - 2, K + 1);
  return left(N - 3, A) - right(N - 3, A ^ K);
}

int right(int N, int K) {
  if (N <= 1)
    return K ^ 1;
  ++Count;
  int A = right(N - 2, K * 3);
  return right(N - 4, A) + left(N - 3, A - K);
}

typedef int (*Function)(int, void *);

static int visit(int N, void *Next) {
  if (N <= 0)
    return Next == (void *)visit ? 3 : 4;
  ++Count;
  int A = visit(N - 1, Next);
  int B = ((Function)Next)(N - 2, (void *)visit);
  return visit(N - 3, Next) * 5 - A + B;
}

static int other(int N, void *Next) { return N + visit(N / 2, Next); }

static int (*volatile Kept)(int, int) = left;

int main(void) {
  printf("%d\n", left(15, 2));
  printf("%d\n", Kept(14, 7));
  printf("%d %d\n", Kept == left, Kept == right);
  printf("%d\n", right(16, 5));
  printf("%d %d\n", visit(9, (void *)visit), visit(9, (void *)other));
  printf("%d\n", Count);
}
