// Small structs that are returned in registers.
// RUN: %compare --chained countdown=1234 %s
#include <stdio.h>

struct Pair {
  long Sum;
  double Product;
};

static struct Pair countdown(long N) {
  struct Pair Result = {0, 1};
  if (N) {
    Result = countdown(N - 1);
    Result.Sum += N;
    Result.Product *= N;
  }
  return Result;
}

int main(int Argc, char **Argv) {
  struct Pair P = countdown(29 + Argc);
  printf("%ld %g\n", P.Sum, P.Product);
}
