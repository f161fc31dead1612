// A recursion that would never end for a constant that never arrives there is specialised up to the budget and stays right.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring climb %s
#include <inlinerecursion/request.h>
#include <stdio.h>

// Ends for even N only, and only even N arrive.
INLINERECURSION_SPECIALIZE
static unsigned climb(unsigned N, unsigned Odd) {
  unsigned Rest = N % 4;
  if (N == 400)
    return Rest;
  if (Odd)
    return climb(N + 1, Odd) * 5 + 1;
  return climb(N + 2, Odd) * 3 + Rest;
}

int main(int Count, char **Arguments) {
  printf("%u\n", climb(0, 0));
  if (Count > 1000)
    printf("%u\n", climb(401, 1));
  printf("%u\n", climb(100, 0));
}
