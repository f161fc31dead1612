// A recursive interpreter whose labels stand in a static table is not copied: the table leads into the original.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --no-ring interpret %s
#include <stdio.h>

static int interpret(unsigned N, const unsigned char *Code) {
  static const void *const Table[] = {&&Stop, &&Print, &&Recurse};
  unsigned Rest = N % 4, Local = N * 3;
  goto *Table[*Code++];
Print:
  printf("print %u %u\n", Rest, Local);
  goto *Table[*Code++];
Recurse:
  Local += interpret(N + 1, Code);
  printf("back %u %u\n", N, Local);
Stop:
  return Local;
}

int main(void) {
  unsigned char Code[] = {1, 2, 1, 1, 2, 1, 2, 1, 1, 2, 2, 2, 1, 0};
  printf("%d\n", interpret(5, Code));
}
