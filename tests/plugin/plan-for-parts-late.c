// What a split has left obeys its own plan behind the inliner, and not the one of the function that it was taken from; what is written of both makes the same object again.
// RUN: split-file %s %t && cd %t
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=rest.plan -mllvm -inlinerecursion-write-plan=written.plan -Rpass=inlinerecursion -fno-caret-diagnostics -c -o a.o walk.c 2>&1 | FileCheck walk.c --check-prefix=REST --implicit-check-not=remark:
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=written.plan -c -o b.o walk.c && cmp a.o b.o
// A late plan for the whole leaves what is left of it to one look, as without that plan.
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=whole.plan -c -o c.o walk.c
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=early.plan -c -o d.o walk.c && cmp c.o d.o

//--- rest.plan
version: 1
functions:
  - {name: walk, plan: split}
  - {name: walk.recurse.rest, plan: none}
  - {name: walk.recurse.rest, plan: ring copies=3 no-loop-first, where: late}
//--- whole.plan
version: 1
functions:
  - {name: walk, plan: split}
  - {name: walk, plan: ring copies=3, where: late}
//--- early.plan
version: 1
functions:
  - {name: walk, plan: split}
//--- walk.c
// REST: remark: 'walk' rebuilt as a split {{.*}}, as planned
// REST: remark: 'walk.recurse.rest' rebuilt as a ring of 3 copies {{.*}}, as planned
int Sum, Table[64];
struct Tree { struct Tree *Left, *Right; int Value; };
void walk(struct Tree *T) {
  Sum ^= T->Value;
  if (T->Value < 0)
    return;
  walk(T->Left);
  for (int I = 0; I < 64; ++I)
    Table[I] += Sum * I;
  walk(T->Right);
}
