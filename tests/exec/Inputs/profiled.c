#include <stdio.h>

static unsigned sum(unsigned N) {
  if (N % 17 == 0)
    return 1;
  return N * 5 + sum(N / 2) / 3;
}

int main(void) {
  unsigned Total = 0;
  for (unsigned I = 0; I < 5000; ++I)
    Total += sum(I * 7);
  printf("%u\n", Total);
}
