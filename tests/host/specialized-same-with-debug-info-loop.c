// A loop that says where it stands in the source is the same loop in every copy.
// RUN: %clang_with_pass -I %S/../../include -O2 -mllvm -print-after=inlinerecursion -c -o /dev/null %s 2>&1 | FileCheck %s
// RUN: %clang_with_pass -I %S/../../include -O2 -g -mllvm -print-after=inlinerecursion -c -o /dev/null %s 2>&1 | FileCheck %s
#include <inlinerecursion/request.h>

int use(int);

INLINERECURSION_SPECIALIZE
static int walk(unsigned Cell) {
  unsigned Column = Cell % 4;
  for (unsigned I = 0; I != Column; ++I)
    use(I);
  return Cell == 0 ? 0 : walk(Cell - 1) + use(Cell);
}

int start(void) { return walk(9); }

// CHECK-COUNT-10: define internal i32 @walk.specialized
