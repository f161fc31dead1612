// Exceptions pass through copies for states, and run the destructors of every level in
// order.
// RUN: %python %S/../tools/compare_auto.py --clang %clangxx --plugin %plugin --scratch %t.dir --states _Z5climbbjj %s
#include <cstdio>
#include <stdexcept>

static unsigned Trail;
static volatile unsigned Sink;

struct Step {
  unsigned N;
  explicit Step(unsigned N) : N(N) { Trail = Trail * 3 + N; }
  ~Step() { Trail = Trail * 5 + N; }
};

unsigned climb(bool Left, unsigned N, unsigned K) {
  if (N == 0)
    return K;
  Step S(N + (Left ? 100 : 0));
  if (Left)
    Sink = Sink * 3 + K;
  else
    Sink = (Sink ^ K) - 7;
  if (K % 23 == 5)
    throw N;
  unsigned A = climb(!Left, N - 1, K * 7 + 1);
  try {
    A ^= climb(!Left, N / 2, A + K);
  } catch (unsigned &Level) {
    if (Level % 2 == Left)
      throw;
    A += Level;
  }
  return A * 3 + Left;
}

int main(int Count, char **) {
  for (unsigned I = 0; I != 60; ++I) {
    try {
      std::printf("%u ", climb(true, 9, I));
      std::printf("%u ", climb(false, 8, I));
      std::printf("%u ", climb(Count == 1, 7, I));
    } catch (unsigned Level) {
      std::printf("thrown at %u ", Level);
    }
    std::printf("%u %u\n", Trail, Sink);
  }
}
