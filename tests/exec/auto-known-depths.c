// Searches of several arguments that begin with constants are followed to their
// end.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --chain place --chain tree %s
#include <stdio.h>

static unsigned Blocked[6], Solutions, Trail;

static void place(int Row, unsigned Columns, unsigned Rising,
                  unsigned Falling) {
  if (Row == 6) {
    ++Solutions;
    return;
  }
  unsigned Free = 63 & ~(Columns | Rising | Falling | Blocked[Row]);
  while (Free) {
    unsigned Square = Free & (0 - Free);
    Free ^= Square;
    Trail = Trail * 31 + Square;
    place(Row + 1, Columns | Square, (Rising | Square) << 1,
          (Falling | Square) >> 1);
  }
}

static unsigned tree(unsigned Path, int Depth, unsigned *Visits) {
  ++*Visits;
  if (Depth == 0)
    return Path % 5;
  unsigned A = tree(Path * 3 + 1, Depth - 1, Visits);
  Trail = Trail * 7 + A;
  unsigned B = tree(Path * 5 + 2, Depth - 1, Visits);
  return A * 2 + B;
}

int main(void) {
  for (unsigned Case = 0; Case < 9; ++Case) {
    unsigned Visits = 0;
    Blocked[Case % 6] = Case * 5 & 63;
    place(0, 0, 0, 0);
    unsigned Sum = tree(Case, 3, &Visits) + tree(Solutions, 2, &Visits);
    printf("%u %u %u %u\n", Solutions, Sum, Visits, Trail);
  }
}
