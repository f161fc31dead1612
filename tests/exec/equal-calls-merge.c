// Recursion whose equal calls become one does what it did: steps in one argument and in two, tests that all activations of a level share and tests of each place, tables that change between calls from outside, levels that end anywhere within a ring.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring fib --ring trib --ring best --ring seam --ring curve --ring apart --ring ends %s
#include <stdio.h>

enum { Size = 20 };
static unsigned Table[Size][Size];
static double Points[Size], At;
static int Rows, Width = 9;

static unsigned fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }

static unsigned trib(int N) {
  if (N < 3)
    return N * N + 1;
  return trib(N - 1) ^ (trib(N - 2) * 3 + trib(N - 3));
}

static unsigned best(int Row, int Place) {
  if (Row >= Rows)
    return Place;
  unsigned Left = best(Row + 1, Place), Right = best(Row + 1, Place + 1);
  return Table[Row][Place] + (Left > Right ? Left : Right);
}

// The test of a place differs within a level.
static unsigned seam(int Row, int Place) {
  if (Place < 0 || Place >= Width)
    return 1000;
  if (Row == 0)
    return Table[0][Place];
  unsigned Left = seam(Row - 1, Place - 1), Above = seam(Row - 1, Place),
           Right = seam(Row - 1, Place + 1);
  unsigned Least = Left < Above ? Left : Above;
  return Table[Row][Place] + (Least < Right ? Least : Right);
}

static double curve(int Degree, int I) {
  if (Degree == 0)
    return Points[I];
  return (1 - At) * curve(Degree - 1, I) + At * curve(Degree - 1, I + 1);
}

// Steps of three and of two: equal in the second level and not across levels.
static unsigned apart(int N) {
  if (N < 4)
    return N + 7;
  unsigned A = apart(N - 3), B = apart(N - 2);
  return A * 5 - B;
}

// Two ways to end, with different results.
static unsigned ends(int N, int K) {
  if (N == 0)
    return K;
  if (K == 3)
    return N * 17;
  unsigned A = ends(N - 1, K), B = ends(N - 1, K + 1);
  return A * 3 ^ B;
}

int main(int Argc, char **Argv) {
  for (int Round = 0; Round < 3; ++Round) {
    for (int I = 0; I < Size; ++I) {
      Points[I] = (I * 7 + Round) % 5;
      for (int J = 0; J < Size; ++J)
        Table[I][J] = (I * 31 + J * 17 + Round * 5) % 23;
    }
    At = 0.25 * (Round + Argc);
    for (int N = 0; N < 11; ++N) {
      Rows = N;
      printf("%d: %u %u %u %u %.6f %u %u\n", N, fib(N), trib(N), best(0, 0),
             seam(N < 8 ? N : 7, (N + Round) % Width), curve(N, Round), apart(N),
             ends(N, Round - 1));
    }
  }
  return 0;
}
