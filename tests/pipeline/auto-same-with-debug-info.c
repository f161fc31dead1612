// Rings and guards are the same with and without debug information.
// RUN: %clang_with_pass -O2 -c %s -o %t.plain.o -Rpass=inlinerecursion 2> %t.remarks
// RUN: FileCheck %s --input-file %t.remarks
// RUN: %clang_with_pass -O2 -g -c %s -o %t.debug.o
// RUN: %llvm_libs/../bin/llvm-objcopy --strip-debug %t.debug.o %t.stripped.o
// RUN: %llvm_libs/../bin/llvm-objdump -d %t.plain.o | sed 1,3d > %t.plain.s
// RUN: %llvm_libs/../bin/llvm-objdump -d %t.stripped.o | sed 1,3d > %t.stripped.s
// RUN: diff %t.plain.s %t.stripped.s

// CHECK: 'walk' rebuilt as a ring of
typedef struct Tree {
  struct Tree *Left, *Right;
  long Value;
} Tree;

long Total;

void walk(Tree *T, long Depth) {
  if (!T)
    return;
  long Kept = Total ^ Depth;
  walk(T->Left, Depth + 1);
  Total = Total * 3 + T->Value - Kept;
  walk(T->Right, Depth + 2);
}
