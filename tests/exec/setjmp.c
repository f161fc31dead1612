// A longjmp from the bottom leaves copies and function at once.
// RUN: %compare --chained sink=234 %s
#include <setjmp.h>
#include <stdio.h>

static jmp_buf Surface;
static int volatile Reached;

static int sink(int N) {
  Reached = N;
  if (N == 0)
    longjmp(Surface, 42);
  return sink(N - 1) + Reached;
}

int main(void) {
  int Came = setjmp(Surface);
  if (Came == 0)
    printf("%d\n", sink(37));
  printf("%d %d\n", Came, Reached);
}
