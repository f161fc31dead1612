// A function that is rebuilt in front of the inliner and once more behind it has two entries in the plan that is written, and both are obeyed.
// RUN: split-file %s %t && cd %t
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=two.plan -mllvm -inlinerecursion-write-plan=written.plan -Rpass=inlinerecursion -c -o a.o walk.c 2>&1 | FileCheck walk.c --check-prefix=REMARKS
// RUN: FileCheck walk.c < written.plan
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=written.plan -c -o b.o walk.c && cmp a.o b.o

//--- two.plan
version: 1
functions:
  - {name: walk, plan: states}
  - {name: walk, plan: ring copies=2, where: late}
//--- walk.c
// REMARKS: 'walk' rebuilt for 2 states of argument 2 (1, 0) {{.*}}, as planned
// REMARKS: 'walk' rebuilt as a ring of 2 copies {{.*}}, as planned
// CHECK: functions:
// CHECK-NEXT:   - name:            walk
// CHECK-NEXT:     plan:            'states arguments=2'
// CHECK-NEXT:     body:
// CHECK-NEXT:     reason:
// CHECK-NEXT:   - name:            walk
// CHECK-NEXT:     plan:            'ring copies=2 {{.*}}'
// CHECK-NEXT:     where:           late
int Sum;
struct Tree { struct Tree *Left, *Right; int Value; };
void walk(struct Tree *T, int Kind) {
  if (!T)
    return;
  walk(T->Left, 1 - Kind);
  Sum += Kind ? T->Value * 3 ^ 5 : T->Value + 7;
  walk(T->Right, Kind);
}
void enter(struct Tree *T) { walk(T, 1); }
