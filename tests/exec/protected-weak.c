// The definition that the linker takes is the one that runs, not a copy of the other.
// RUN: %compare --chained own=01234 %s %S/Inputs/protected-weak-other.c
#include <stdio.h>

__attribute__((weak)) unsigned replaced(unsigned N) {
  return N ? N + replaced(N - 1) : 0;
}

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

int main(void) { printf("%u %u\n", replaced(5), own(5)); }
