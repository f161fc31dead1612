// A function and what hands values on in its place have one plan: the latter's.
// RUN: rm -f %t.plan && %clang_with_pass -O3 -c %s -o %t.plain -mllvm -inlinerecursion-write-plan=%t.plan -Rpass=inlinerecursion 2>&1 | FileCheck %s --check-prefix=BUILT
// RUN: FileCheck %s < %t.plan
// RUN: %clang_with_pass -O3 -c %s -o %t.obeyed -mllvm -inlinerecursion-plan=%t.plan 2>&1 | count 0
// RUN: cmp %t.plain %t.obeyed
// BUILT-DAG: 'walk' rebuilt as a ring
// BUILT-DAG: 'walk.recurse.value' rebuilt as a chain
// CHECK: name: walk
// CHECK-NEXT: plan: 'chain copies=6'
// CHECK-NOT: name:

extern int Counter, Seen[32], Used;

__attribute__((used)) void walk(const int *Value, int Left) {
  if (Left == 0)
    return;
  ++Counter;
  Seen[Used++] = *Value;
  walk(Value, Left - 1);
  Seen[Used++] = *Value;
}

void (*volatile Enter)(const int *, int) = walk;

int main(void) {
  Enter(&Counter, 5);
  int Mine = 7;
  walk(&Mine, 5);
}
