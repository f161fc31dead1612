// Structures passed by value on the stack arrive complete, also where a call becomes a tail call.
// RUN: %compare --chained walk=3 --chained own=01234 %s
#include <stdio.h>

struct Wide {
  long Values[6];
};

static long Sum;
static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

__attribute__((noinline)) static void leave(struct Wide *W) {
  Sum += W->Values[0] + W->Values[5];
}

void walk(struct Wide W, int N) {
  if (N == 0) {
    leave(&W);
    return;
  }
  W.Values[N % 6] += N;
  W.Values[5] ^= W.Values[0];
  if (N & 64) {
    leave(&W), leave(&W), leave(&W), leave(&W), leave(&W), leave(&W);
    W.Values[2] *= Sum, W.Values[3] /= Sum, W.Values[1] %= Sum;
    leave(&W), leave(&W), leave(&W), leave(&W), leave(&W), leave(&W);
    leave(&W), leave(&W), leave(&W), leave(&W), leave(&W), leave(&W);
  }
  walk(W, N - 1);
}

__attribute__((noinline)) void begin(int N) {
  struct Wide W = {{1, 2, 3, 4, 5, N}};
  walk(W, N);
}

__attribute__((noinline)) void beginAgain(int N) {
  struct Wide W = {{1, 2, 3, 4, N, N}};
  walk(W, N);
}

int main(int Argc, char **Argv) {
  begin(20 * Argc);
  beginAgain(30 * Argc);
  printf("%ld %u\n", Sum, own(5));
}
