// A tail call to another state needs no stack, however deep: a walk along a list of a
// million with a flag that toggles, and a self call of another kind beside it.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --states along --ring summing --passed-sum summing %s
#include <stdio.h>
#include <stdlib.h>

typedef struct Item {
  struct Item *Next, *Below;
  unsigned Value;
} Item;

static volatile unsigned Sink;

void along(Item *I, _Bool Flag) {
  if (!I)
    return;
  if (Flag)
    Sink = Sink * 3 + I->Value;
  else
    Sink = (Sink ^ I->Value) + 1;
  along(I->Below, !Flag);
  Sink += Flag ? 7 : 11;
  along(I->Next, !Flag);
}

unsigned summing(Item *I, _Bool Flag) {
  if (!I)
    return 0;
  unsigned Here = Flag ? I->Value * 3 : I->Value ^ 5;
  if (Flag)
    Sink = Sink * 5 + 1;
  Here += summing(I->Below, !Flag);
  return Here + summing(I->Next, !Flag);
}

int main(int Count, char **Arguments) {
  enum { Length = 1000000 };
  Item *Items = calloc(Length, sizeof(Item));
  for (unsigned N = 0; N != Length; ++N) {
    Items[N].Value = N * 7 + Count;
    if (N + 1 != Length)
      Items[N].Next = &Items[N + 1];
    if (N % 1000 == 3)
      Items[N].Below = calloc(1, sizeof(Item));
  }
  along(Items, 1);
  printf("%u\n", Sink);
  along(Items, Count == 2);
  printf("%u %u %u\n", Sink, summing(Items, 1), summing(Items, Count == 1));
}
