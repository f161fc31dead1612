// A plan to leave a function alone behind the inliner leaves it alone in front of it, too; that is told and written, and obeyed again.
// RUN: split-file %s %t && cd %t
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=none.plan -mllvm -inlinerecursion-write-plan=written.plan -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -c -o a.o walk.c 2>&1 | FileCheck walk.c --check-prefix=REMARKS --implicit-check-not=rebuilt
// RUN: FileCheck walk.c < written.plan
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=written.plan -c -o b.o walk.c && cmp a.o b.o

//--- none.plan
version: 1
functions:
  - {name: walk, plan: none, where: late}
//--- walk.c
// REMARKS: 'walk' not chained: its plan leaves it as it is
// CHECK: - name: {{.*}}walk
// CHECK-NEXT: plan: {{.*}}none
// CHECK-NEXT: where: {{.*}}late
int Sum;
struct Tree { struct Tree *Left, *Right; int Value; };
void walk(struct Tree *T) {
  if (!T)
    return;
  walk(T->Left);
  Sum += T->Value;
  walk(T->Right);
}
