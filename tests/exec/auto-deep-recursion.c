// A hundred thousand levels that need stack fit where they did, in either direction.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring tree --ring weave %s
#include <stdio.h>
#include <stdlib.h>

typedef struct Tree {
  struct Tree *Left, *Right;
  long Value;
} Tree;

static long tree(Tree *T) {
  if (!T)
    return 1;
  long Left = tree(T->Left), Right = tree(T->Right);
  return Left > Right ? Left + 1 - Right % 2 : Right * 3 + Left;
}

static void weave(Tree *T, char *Path, long A, long B) {
  if (!T)
    return;
  weave(T->Left, Path + 1, A ^ 3, B + T->Value);
  Path[0] = (char)(A + B);
  weave(T->Right, Path + 1, B, A);
  Path[0] ^= 1;
}

enum { Levels = 100000 };
static char Path[Levels + 2];

int main(void) {
  for (int Shape = 0; Shape != 3; ++Shape) {
    Tree *Root = NULL;
    for (long I = 0; I != Levels; ++I) {
      Tree *T = calloc(1, sizeof *T);
      T->Value = I;
      // Left only, right only, and one after the other.
      *(Shape == 0 || (Shape == 2 && I % 2) ? &T->Left : &T->Right) = Root;
      Root = T;
    }
    printf("%ld\n", tree(Root));
    weave(Root, Path, 1, 2);
    unsigned Sum = 0;
    for (int I = 0; I != Levels; ++I)
      Sum = Sum * 31 + (unsigned char)Path[I];
    printf("%u\n", Sum);
  }
}
