// Exceptions leave rings, and run the destructors of every level in order.
// RUN: %python %S/../tools/compare_auto.py --clang %clangxx --plugin %plugin --scratch %t.dir --ring _ZL5climbij %s
#include <cstdio>
#include <stdexcept>

static unsigned Trail;

struct Step {
  int N;
  explicit Step(int N) : N(N) { Trail = Trail * 3 + unsigned(N); }
  ~Step() { Trail = Trail * 5 + unsigned(N); }
};

static unsigned climb(int N, unsigned K) {
  if (N <= 0)
    return K;
  Step S(N);
  if (K % 23 == 5)
    throw N;
  unsigned A = climb(N - 1, K * 7 + 1);
  try {
    A ^= climb(N - 2, A + K);
  } catch (int &Level) {
    if (Level % 2)
      throw;
    A += unsigned(Level);
  }
  return A * 3 + 1;
}

int main() {
  for (unsigned I = 0; I != 60; ++I) {
    try {
      std::printf("%u ", climb(11, I));
    } catch (int Level) {
      std::printf("thrown at %d ", Level);
    }
    std::printf("%u\n", Trail);
  }
}
