// A large frame is not multiplied where the recursion goes on through another function.
// RUN: %compare --chained own=01234 %s %S/Inputs/protected-frame-other.c
#include <stdio.h>

int Further = 0;
static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

void fill(char *Buffer, int Size, int N);
int around(int N);

int large(int N, int Depth) {
  char Buffer[8192];
  fill(Buffer, sizeof(Buffer), N);
  if (Depth == 0)
    return Buffer[N & 8191] + (N > 0 ? around(N - 1) : 0);
  return large(N + (Buffer[3] & 1) - 1, Depth - 1) + Buffer[5];
}

int around(int N) { return large(N, Further) + 1; }

void printOwn(void) { printf("%u\n", own(5)); }
