// A ring entered with several constants, which follow each other around it, does what the recursion does.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring walk %s
#include <inlinerecursion/request.h>
#include <stdio.h>

static unsigned Board[41];

INLINERECURSION_SPECIALIZE
static unsigned walk(unsigned Cell, unsigned Step) {
  unsigned Column = Cell % 8;
  Board[Cell] += Step + Column;
  if (Cell >= 32)
    return Board[Cell];
  unsigned Result = walk(Cell + 1, Step) * 3;
  if (Column == 5)
    Result += walk(Cell + 8, -Step);
  return Result ^ Board[Cell];
}

int main(void) {
  printf("%u\n", walk(0, 1));
  printf("%u\n", walk(17, 2));
  printf("%u\n", walk(0, 1));
  printf("%u\n", walk(40, -3u));
  for (int I = 0; I < 41; ++I)
    printf("%u ", Board[I]);
  printf("\n");
}
