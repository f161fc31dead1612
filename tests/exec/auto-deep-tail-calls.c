// What plain clang turns into loops needs no stack with rings either, a million levels deep.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring walk --ring find --ring get --passed-sum sum --ring sum --ring deepest --ring fold --ring discard %s
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

typedef struct Tree {
  struct Tree *Left, *Right;
  long Value;
} Tree;

static long Total, Freed;

// The last call stands alone, ...
static void walk(Tree *T) {
  if (!T)
    return;
  walk(T->Left);
  Total = Total * 3 + T->Value;
  walk(T->Right);
}

// ... shares a block of returns with other values, ...
static bool find(Tree *T, long Value) {
  if (!T)
    return false;
  if (T->Value == Value)
    return true;
  return find(T->Left, Value) || find(T->Right, Value);
}

static Tree *get(Tree *T, long Value) {
  if (!T || T->Value == Value)
    return T;
  Tree *Found = get(T->Left, Value);
  return Found ? Found : get(T->Right, Value);
}

// ... is added to something, ...
static long sum(Tree *T) {
  return T ? T->Value + sum(T->Left) + sum(T->Right) : 0;
}

// ... counts, ...
static long deepest(Tree *T, long Depth) {
  if (!T)
    return Depth;
  long Left = deepest(T->Left, Depth + 1);
  return Left > 2000000 ? Left : deepest(T->Right, Depth + 1);
}

// ... needs the other call's result, ...
static long fold(Tree *T, long (*F)(long, long), long Start) {
  return T ? fold(T->Right, F, F(fold(T->Left, F, Start), T->Value)) : Start;
}

// ... or comes behind a call of another function.
static void discard(Tree *T) {
  if (!T)
    return;
  discard(T->Left);
  Tree *Right = T->Right;
  free(T);
  ++Freed;
  discard(Right);
}

static long mix(long A, long B) { return A * 31 + B; }

static Tree *make(long Value, Tree *Left, Tree *Right) {
  Tree *T = malloc(sizeof *T);
  *T = (Tree){Left, Right, Value};
  return T;
}

int main(void) {
  Tree *Root = NULL;
  for (long I = 0; I != 1000000; ++I)
    Root = make(I, I % 3 ? NULL : make(I ^ 77, NULL, NULL), Root);
  walk(Root);
  printf("%ld\n", Total);
  printf("%d %d\n", find(Root, 5), find(Root, -1));
  printf("%ld\n", get(Root, 5)->Value);
  printf("%ld\n", sum(Root));
  printf("%ld\n", deepest(Root, 0));
  printf("%ld\n", fold(Root, mix, 3));
  discard(Root);
  printf("%ld\n", Freed);
}
