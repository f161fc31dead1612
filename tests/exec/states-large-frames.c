// Copies for states of a function with large variables in memory do not share a frame,
// which the way through another function would take each time around.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --states step --states search %s
#include <stdio.h>
#include <string.h>

static volatile unsigned Sink;

__attribute__((noinline)) static unsigned around(unsigned Left);

// Six states, and about 500 bytes each.  From the first one on, the way leads
// through another function.
static unsigned step(unsigned State, unsigned Left) {
  unsigned char Buffer[480];
  if (State == 6)
    return Left;
  memset(Buffer, State * 7 + (Left & 3), sizeof(Buffer));
  Sink = Buffer[Left % 480];
  if (State == 0)
    Sink += around(Left);
  if (Left & 0x80000000u)
    return step(State + 1, Left + Buffer[3]) * 3 + Buffer[Sink % 480];
  return Sink;
}

static unsigned around(unsigned Left) {
  return Left == 0 ? 3 : step(0, Left - 1) * 5 + 1;
}

// Each row has the places that are left for it.
unsigned search(unsigned Row, const unsigned char *Free, unsigned Sum) {
  unsigned char Mine[300];
  if (Row == 5)
    return Sum % 1009;
  memcpy(Mine, Free, sizeof(Mine));
  unsigned Best = 0;
  for (unsigned Place = Row; Place < 300; Place += 60) {
    if (Mine[Place] == 0)
      continue;
    --Mine[Place];
    unsigned Value = search(Row + 1, Mine, Sum * 7 + Place * (Row + 3));
    ++Mine[Place];
    if (Value > Best)
      Best = Value;
  }
  return Best;
}

int main(int Count, char **Arguments) {
  printf("%u\n", around(7000 + Count));
  unsigned char Free[300];
  for (unsigned I = 0; I != sizeof(Free); ++I)
    Free[I] = (I * 5 + Count) % 4;
  printf("%u %u %u\n", search(0, Free, 1), search(2, Free, 5),
         search(Count + 2, Free, 9));
}
