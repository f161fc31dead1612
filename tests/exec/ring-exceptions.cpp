// Exceptions thrown inside a ring and its specialisations pass through it, and destructors run on every level.
// RUN: %python %S/../tools/compare_rings.py --clang %clangxx --plugin %plugin --include %S/../../include --scratch %t.dir --ring _Z7descendji %s
#include <cstdio>
#include <inlinerecursion/request.h>
#include <stdexcept>

static int Live;

struct Guard {
  unsigned Level;
  explicit Guard(unsigned Level) : Level(Level) { ++Live; }
  ~Guard() {
    --Live;
    std::printf("leave %u\n", Level);
  }
};

// One self call is an invoke, for the guard's sake; one is a plain call.
INLINERECURSION_SPECIALIZE
int descend(unsigned N, int Kind) {
  unsigned Rest = N % 4;
  if (N == 0) {
    if (Kind == 1)
      throw std::runtime_error("bottom");
    if (Kind == 2)
      throw Kind;
    return 5;
  }
  if (Rest == 1) {
    Guard G(N);
    return descend(N - 1, Kind) + 1;
  }
  return descend(N - 1, Kind) * 2 + static_cast<int>(Rest);
}

int main() {
  volatile unsigned Start = 7;
  for (int Round = 0; Round < 4; ++Round) {
    try {
      int Result = Round == 0   ? descend(6, 0)
                   : Round == 1 ? descend(9, 1)
                   : Round == 2 ? descend(Start, 2)
                                : descend(Start, 0);
      std::printf("%d\n", Result);
    } catch (const std::runtime_error &E) {
      std::printf("%s, %d live\n", E.what(), Live);
    } catch (int Kind) {
      std::printf("%d, %d live\n", Kind, Live);
    }
  }
}
