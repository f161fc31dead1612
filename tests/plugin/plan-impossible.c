// What cannot be built, or would not be right, is refused whoever plans it: one warning that names the entry and the reason, and the function is decided about as usual.
// RUN: split-file %s %t
// RUN: cd %t && %clang_with_pass -O3 -mllvm -inlinerecursion-plan=bold.plan -Rpass=inlinerecursion -fno-caret-diagnostics -S -emit-llvm -o /dev/null functions.c 2>&1 | FileCheck functions.c --implicit-check-not=warning: --implicit-check-not=planned

//--- functions.c
#include <setjmp.h>
#include <stdarg.h>
extern int Sum;
extern jmp_buf Back;
struct Tree { struct Tree *Left, *Right; int Value; };

// CHECK-DAG: warning: the plan 'ring copies=3' (bold.plan:3) that 'weak' asks for is not built: another definition may take its place; make it static [-Wpass-failed=inlinerecursion]
__attribute__((weak)) int weak(int N) { return N < 2 ? N : weak(N - 1) + weak(N - 2); }

// CHECK-DAG: warning: the plan 'ring' (bold.plan:4) that 'gcd' asks for is not built: its recursion becomes a loop
int gcd(int A, int B) { return B ? gcd(B, A % B) : A; }

// CHECK-DAG: warning: the plan 'chain' (bold.plan:5) that 'fib' asks for is not built: no constant depth is known of it
// CHECK-DAG: remark: 'fib' rebuilt as a ring of {{[2-9]}} copies by the automatic policy, so that equal calls merge
int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }

// CHECK-DAG: warning: the plan 'chain copies=3' (bold.plan:6) that 'deep' asks for is not built: {{no constant depth|there would be 5 copies}}
static int deep(int N) {
  int Result = 1;
  for (int I = 0; I < N; ++I)
    Result += deep(N - 1) ^ I;
  return Result;
}
int enter(void) { return deep(4); }

// CHECK-DAG: warning: the plan 'ring copies=20' (bold.plan:7) that 'wide' asks for is not built: so many copies {{.*}}; raise -inlinerecursion-plan-growth [-Wpass-failed
int wide(struct Tree *T) {
  int Left = T->Left ? wide(T->Left) : 1, Right = T->Right ? wide(T->Right) : 2;
  return T->Value * Left ^ Right;
}

// CHECK-DAG: warning: the plan 'leaves levels=4' (bold.plan:8) that 'down' asks for is not built: it does not count down to a constant
int down(struct Tree *T) {
  return T ? 1 + down(T->Left) * down(T->Right) : 0;
}

// CHECK-DAG: warning: the plan 'states' (bold.plan:9) that 'opaque' asks for is not built: no such finite states follow
int opaque(int N) { return N < 2 ? N : opaque(N - 1) ^ opaque(N - 3); }

// CHECK-DAG: warning: the plan 'ring pass-sum' (bold.plan:10) that 'most' asks for is not built: it adds up no results that could be handed on
int most(struct Tree *T) {
  if (!T)
    return 0;
  int Left = most(T->Left), Right = most(T->Right);
  return Left > Right ? Left : Right;
}

// CHECK-DAG: warning: the plan 'ring loop-first' (bold.plan:11) that 'both' asks for is not built: none of its self calls, or each of them, becomes a loop
int both(struct Tree *T) {
  if (!T)
    return 0;
  int Left = both(T->Left), Right = both(T->Right);
  return Left > Right ? Left : Right;
}

// CHECK-DAG: warning: the plan 'ring' (bold.plan:12) that 'jumps' asks for is not built: it calls {{.*}}setjmp
int jumps(struct Tree *T) {
  if (!T || setjmp(Back))
    return 0;
  return 1 + jumps(T->Left) * jumps(T->Right);
}

// CHECK-DAG: warning: the plan 'ring' (bold.plan:13) that 'any' asks for is not built: it takes variable arguments
int any(int N, ...) {
  if (N == 0)
    return Sum;
  return any(N - 1, N) ^ any(N - 2, N);
}

// The rules of the level are asked for what they do not build.
// CHECK-DAG: warning: the plan 'ring copies=3 rules' (bold.plan:14) that 'ruled' asks for is not built: the rules of the level do not build it
int ruled(struct Tree *T) {
  return T ? T->Value ^ ruled(T->Left) ^ ruled(T->Right) : 0;
}

//--- bold.plan
version: 1
functions:
  - {name: weak, plan: ring copies=3}
  - {name: gcd, plan: ring}
  - {name: fib, plan: chain}
  - {name: deep, plan: chain copies=3}
  - {name: wide, plan: ring copies=20}
  - {name: down, plan: 'leaves levels=4'}
  - {name: opaque, plan: states}
  - {name: most, plan: ring pass-sum}
  - {name: both, plan: ring loop-first}
  - {name: jumps, plan: ring}
  - {name: any, plan: ring}
  - {name: ruled, plan: ring copies=3 rules}
