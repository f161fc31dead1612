// A weak function that another file defines anew is not copied: its callers get the other one.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --no-ring answer %s %S/Inputs/weak-function-other.c
#include <stdio.h>

__attribute__((weak)) int answer(unsigned N) {
  unsigned Rest = N % 4;
  printf("weak %u\n", Rest);
  return N ? answer(N - 1) + 1 : 0;
}

int main(void) { printf("%d\n", answer(3)); }
