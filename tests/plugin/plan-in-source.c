// INLINERECURSION_PLAN says in the source what a plan file says; a file goes before it, and it goes before other requests; words that are none are warned about.
// RUN: split-file %s %t
// RUN: cd %t && %clang_with_pass -I %S/../../include -O3 -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -c -o /dev/null f.c 2>&1 | FileCheck f.c --implicit-check-not=warning:
// RUN: cd %t && %clang_with_pass -I %S/../../include -O3 -mllvm -inlinerecursion-plan=f.plan -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -c -o /dev/null f.c 2>&1 | FileCheck f.c --check-prefix=FILE
// RUN: cd %t && %clang_with_pass -I %S/../../include -O3 -mllvm -inlinerecursion-auto=false -fno-caret-diagnostics -c -o /dev/null f.c 2>&1 | FileCheck f.c --check-prefix=OFF

//--- f.c
#include <inlinerecursion/request.h>
struct Tree { struct Tree *Left, *Right; };

// CHECK-DAG: f.c:[[@LINE+4]]:1: remark: 'depth' rebuilt as a ring of 3 copies by the automatic policy, growing {{.*}}, as planned
// FILE-DAG: remark: 'depth' not chained: its plan leaves it as it is
// OFF-DAG: warning: the plan 'ring copies=3 no-guard' that 'depth' asks for is not built: the automatic policy is off
INLINERECURSION_PLAN("ring copies=3 no-guard")
int depth(struct Tree *T) {
  if (!T)
    return 0;
  int Left = depth(T->Left), Right = depth(T->Right);
  return 1 + (Left > Right ? Left : Right);
}

// CHECK-DAG: remark: 'fib' not chained: its plan leaves it as it is
INLINERECURSION_PLAN("none") INLINERECURSION_COPIES(4)
int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }

// CHECK-DAG: warning: the plan that 'wrong' asks for is not built: unknown word 'copies=3' behind 'split', which takes pass-sum, no-pass-sum, loop-first, no-loop-first [-Wpass-failed=inlinerecursion]
// CHECK-DAG: remark: 'wrong' rebuilt as a ring of 4 copies
INLINERECURSION_PLAN("split copies=3")
int wrong(int N) { return N < 2 ? N : wrong(N - 1) + wrong(N - 2); }

// It may be cold, or not to be inlined: whoever plans it knows.
// CHECK-DAG: remark: 'alone' rebuilt as a ring of 3 copies {{.*}}, as planned
INLINERECURSION_PLAN("ring copies=3") __attribute__((noinline))
int alone(int N) { return N < 2 ? N : alone(N - 1) + alone(N - 2); }

//--- f.plan
version: 1
functions:
  - {name: depth, plan: none}
