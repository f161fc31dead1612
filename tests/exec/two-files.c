// Recursive functions in two files with the same internal name, calling across.
// RUN: %compare --chained step=1234 --chained ladder=234 %s %S/Inputs/two-files-other.c
#include <stdio.h>

long ladder(long N);

static long step(long N) { return N > 0 ? 1 + 2 * step(N - 3) : N; }

int main(int Argc, char **Argv) {
  printf("%ld %ld\n", step(31 * Argc), ladder(15 * Argc));
}
