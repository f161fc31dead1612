/* Five small functions that call themselves, as in anybody's first try. */
#include <stdio.h>

struct Tree {
  struct Tree *Left, *Right;
};

static unsigned fib(unsigned N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }

static unsigned height(const struct Tree *T) {
  if (!T)
    return 0;
  unsigned Left = height(T->Left), Right = height(T->Right);
  return 1 + (Left > Right ? Left : Right);
}

static unsigned ackermann(unsigned M, unsigned N) {
  if (M == 0)
    return N + 1;
  return N == 0 ? ackermann(M - 1, 1) : ackermann(M - 1, ackermann(M, N - 1));
}

static unsigned Moves;
static void hanoi(int Disks, int From, int To) {
  if (Disks == 0)
    return;
  hanoi(Disks - 1, From, 6 - From - To);
  Moves = Moves * 31 + From * 4 + To;
  hanoi(Disks - 1, 6 - From - To, To);
}

static unsigned ways(unsigned Amount, unsigned Coin) {
  if (Amount == 0)
    return 1;
  if (Coin == 0)
    return 0;
  return ways(Amount, Coin - 1) +
         (Amount >= Coin ? ways(Amount - Coin, Coin) : 0);
}

int main(int Count, char **Words) {
  (void)Words;
  struct Tree Leaf = {0, 0}, Inner = {&Leaf, 0}, Root = {&Inner, &Leaf};
  hanoi(9 + Count, 1, 3);
  printf("%u %u %u %u %u\n", fib(19 + Count), height(&Root),
         ackermann(1 + Count, 5), Moves, ways(39 + Count, 11));
  return 0;
}
