// Copies for states, and values in the place of pointers, are the same with and
// without debug information.
// RUN: %clang_with_pass -O2 -c %s -o %t.plain.o -Rpass=inlinerecursion 2> %t.remarks
// RUN: FileCheck %s --input-file %t.remarks
// RUN: %clang_with_pass -O2 -g -c %s -o %t.debug.o
// RUN: %llvm_libs/../bin/llvm-objcopy --strip-debug %t.debug.o %t.stripped.o
// RUN: %llvm_libs/../bin/llvm-objdump -d %t.plain.o | sed 1,3d > %t.plain.s
// RUN: %llvm_libs/../bin/llvm-objdump -d %t.stripped.o | sed 1,3d > %t.stripped.s
// RUN: diff %t.plain.s %t.stripped.s
// RUN: %clang -O2 -g -Xclang -disable-llvm-passes -emit-llvm -S %s -o %t.ll
// RUN: %opt -passes='default<O2>' -S %t.ll -o %t.out.ll
// RUN: FileCheck %s --check-prefix=IR --input-file %t.out.ll

// CHECK: 'walk' rebuilt for 2 states of
// IR-DAG: define internal {{.*}}@walk.specialized{{.*}} !dbg
// IR-DAG: define {{.*}}@count.recurse.value{{.*}} !dbg
typedef struct Tree {
  struct Tree *Left, *Right;
  long Value;
} Tree;

volatile long Total;

void walk(Tree *T, _Bool Odd) {
  if (!T)
    return;
  long Kept = Odd ? T->Value * 3 : T->Value ^ 9;
  if (Odd)
    Total = Total - 7;
  walk(T->Left, !Odd);
  Total = Total * 3 - Kept;
  walk(T->Right, !Odd);
  Total = Total + Odd;
}

void enter(Tree *T) { walk(T, 1); }

long count(const long *N, Tree *T) {
  if (!T)
    return *N;
  long Next = *N + 1;
  long Sum = count(&Next, T->Left) * 3;
  Total = Sum;
  return Sum + count(&Next, T->Right) + Next;
}
