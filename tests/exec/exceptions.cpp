// An exception thrown at the bottom passes through copies and function; destructors run on every level.
// RUN: %compare --chained _Z7descendi=34 %s
#include <cstdio>
#include <stdexcept>

static int Live;

struct Guard {
  int Level;
  explicit Guard(int Level) : Level(Level) { ++Live; }
  ~Guard() {
    --Live;
    std::printf("leave %d\n", Level);
  }
};

// The first call of itself is an invoke, as the guard has to be destroyed; the
// second is a plain call.
int descend(int N) {
  if (N == 0)
    throw std::runtime_error("bottom");
  if (N % 2) {
    Guard G(N);
    return descend(N - 1) + G.Level;
  }
  std::printf("enter %d\n", N);
  return descend(N - 1) + 1;
}

int main() {
  for (int N : {0, 1, 4, 13, 24}) {
    try {
      std::printf("%d\n", descend(N));
    } catch (const std::runtime_error &E) {
      std::printf("%d: %s, %d live\n", N, E.what(), Live);
    }
  }
}
