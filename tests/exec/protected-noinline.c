// Who is not to be inlined has a frame of his own: each activation returns to its own caller.
// RUN: %compare --chained own=01234 %s
#include <stdio.h>

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

static const void *First;

__attribute__((noinline)) int sameCaller(int N) {
  const void *Here = __builtin_return_address(0);
  if (N == 0)
    return 0;
  if (!First)
    First = Here;
  int Below = sameCaller(N - 1);
  return Below + (Here == First);
}

__attribute__((noinline)) int enter(int N) { return sameCaller(N) * 2; }

int main(int Argc, char **Argv) {
  printf("%d %d %u\n", enter(5 * Argc), enter(6 * Argc), own(5));
}
