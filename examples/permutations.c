/* Visits all permutations of six elements by recursive swapping.
 *
 * permute() always runs with depth 0 to 6, so its recursion is seven
 * activations deep whatever the data. Once each depth is a copy of its own, the
 * loop bounds and array indices are constants: the loops unroll and the
 * elements stay in registers between the swaps. */

#include <stdio.h>

static unsigned Element[6] = {3, 1, 4, 15, 9, 2};
static unsigned Checksum;

static void permute(int Depth) {
  if (Depth == 6) {
    Checksum = Checksum * 31 + (Element[0] ^ (Element[2] + Element[5]));
    return;
  }
  for (int I = Depth; I < 6; ++I) {
    unsigned Held = Element[Depth];
    Element[Depth] = Element[I];
    Element[I] = Held;
    permute(Depth + 1);
    Element[I] = Element[Depth];
    Element[Depth] = Held;
  }
}

int main(void) {
  for (int Round = 0; Round < 150000; ++Round) {
    Element[Round % 6] += (unsigned)Round;
    permute(0);
  }
  printf("%08x\n", Checksum);
  return 0;
}
