// A test of memory that the calls change is made anew before each of them.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring flood --ring toggle %s
#include <stdio.h>

enum { Size = 40 };
static char Board[Size][Size];
static int Cells, Fuel = 5000;

static void flood(int X, int Y) {
  if (X < 0 || Y < 0 || X >= Size || Y >= Size || Board[Y][X])
    return;
  Board[Y][X] = (char)(1 + Cells++ % 90);
  flood(X - 1, Y);
  flood(X, Y - 1);
  flood(X + 1, Y);
  flood(X, Y + 1);
}

// Nothing but memory ends it.
static unsigned toggle(unsigned N) {
  if (Fuel <= 0)
    return N;
  --Fuel;
  unsigned A = toggle(N * 3 + 1);
  Fuel -= (int)(A % 3);
  return toggle(A ^ N) * 5 - A;
}

int main(void) {
  for (int I = 0; I != 300; ++I)
    Board[I * 7919 % Size][I * 104729 % Size] = 127;
  flood(11, 13);
  unsigned Sum = 0;
  for (int I = 0; I != Size * Size; ++I)
    Sum = Sum * 31 + (unsigned char)Board[I / Size][I % Size];
  printf("%d %u\n", Cells, Sum);
  printf("%u %d\n", toggle(3), Fuel);
}
