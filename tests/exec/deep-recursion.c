// A chain of ten in front of ten thousand levels.
// RUN: %compare --chained depth=1234 %s
#include <stdio.h>

int volatile Step = 1;

static long depth(int N) { return N == 0 ? 0 : 1 + (depth(N - Step) ^ 1); }

int main(void) { printf("%ld\n", depth(10000)); }
