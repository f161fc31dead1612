// Two rings that differ only in how they take a structure, by value or by address, are not taken for one.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring byValue --ring byAddress %s
#include <inlinerecursion/request.h>
#include <stdio.h>

struct Wide {
  long Values[4];
};

static long byAddress(struct Wide *W, int N);

INLINERECURSION_SPECIALIZE
static long byValue(struct Wide W, int N) {
  int Rest = N % 4;
  W.Values[0] += Rest + 1;
  if (N <= 0)
    return W.Values[0];
  long A = byValue(W, N - 1);
  long B = byAddress(&W, N - 2);
  return A + B * 2 + W.Values[0];
}

INLINERECURSION_SPECIALIZE
static long byAddress(struct Wide *W, int N) {
  int Rest = N % 4;
  W->Values[0] += Rest + 1;
  if (N <= 0)
    return W->Values[0];
  long A = byValue(*W, N - 1);
  long B = byAddress(W, N - 2);
  return A + B * 2 + W->Values[0];
}

int main(void) {
  struct Wide W = {{1}};
  printf("%ld\n", byValue(W, 8));
  printf("%ld\n", byAddress(&W, 8));
  printf("%ld\n", W.Values[0]);
}
