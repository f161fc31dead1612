// A plan for a function behind the inliner is not one for its copies for states; those have plans of their own, obeyed once they call themselves.
// RUN: split-file %s %t && cd %t
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=whole.plan -Rpass=inlinerecursion -fno-caret-diagnostics -c -o a.o walk.c 2>&1 | FileCheck walk.c --implicit-check-not=specialized
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=copy.plan -Rpass=inlinerecursion -fno-caret-diagnostics -c -o b.o walk.c 2>&1 | FileCheck walk.c --check-prefixes=CHECK,COPY

//--- whole.plan
version: 1
functions:
  - {name: walk, plan: states}
  - {name: walk, plan: ring copies=2, where: late}
//--- copy.plan
version: 1
functions:
  - {name: walk, plan: states}
  - {name: walk, plan: ring copies=2, where: late}
  - {name: walk.specialized._.1, plan: ring copies=3, where: late}
//--- walk.c
// CHECK: 'walk' rebuilt for 2 states
// CHECK: 'walk' rebuilt as a ring of 2 copies {{.*}}, as planned
// COPY: 'walk.specialized._.1' rebuilt as a ring of 3 copies {{.*}}, as planned
int Sum;
struct Tree { struct Tree *Left, *Right; int Value; };
void walk(struct Tree *T, int Kind) {
  if (!T)
    return;
  walk(T->Left, 1 - Kind);
  Sum += Kind ? T->Value * 3 ^ 5 : T->Value + 7;
  walk(T->Right, 1 - Kind);
}
void enter(struct Tree *T) { walk(T, 1); }
