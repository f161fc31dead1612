// A function becomes what its plan says, whatever the policy would make of it, with the numbers that the plan says; what is left open is the policy's choice.
// RUN: split-file %s %t
// RUN: cd %t && %clang_with_pass -O3 -mllvm -inlinerecursion-plan=obeyed.plan -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -S -emit-llvm -o obeyed.ll functions.c 2>&1 | FileCheck functions.c --implicit-check-not=warning: --implicit-check-not=remark:
// RUN: FileCheck functions.c --check-prefix=IR < %t/obeyed.ll

//--- functions.c
struct Tree { struct Tree *Left, *Right; int Value; };

// IR-NOT: inlinerecursion-plan
// IR-NOT: inlinerecursion-body

// CHECK-DAG: remark: 'plain' not chained: its plan leaves it as it is
int plain(int N) { return N < 2 ? N : plain(N - 1) + plain(N - 2); }

// A ring that nobody would build of it by himself.
// CHECK-DAG: remark: 'fib' rebuilt as a ring of 4 copies by the automatic policy, {{.*}}, as planned
int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }

// CHECK-DAG: remark: 'sum' rebuilt as a ring of 3 copies by the automatic policy, growing by about {{[0-9]+}} instructions, as planned
int sum(struct Tree *T) {
  return T ? T->Value + sum(T->Left) + sum(T->Right) : 0;
}

// CHECK-DAG: remark: 'handed' rebuilt as a ring of 2 copies by the automatic policy, with its first test in front of calls, {{.*}}, handing its sum on from self call to self call, as planned
int handed(struct Tree *T) {
  return T ? T->Value + handed(T->Left) + handed(T->Right) : 0;
}

// CHECK-DAG: remark: 'move' rebuilt as a leaf chain of 5 copies by the automatic policy, entered where 4 levels are left, {{.*}}, as planned
void move(int N, int From, int To, int Via, int *Moves) {
  if (N == 0)
    return;
  move(N - 1, From, Via, To, Moves);
  Moves[From] += To;
  move(N - 1, Via, To, From, Moves);
}

// The policy builds a ring.
// CHECK-DAG: remark: 'apart' rebuilt as a split by the automatic policy, {{.*}}, as planned
// CHECK-DAG: remark: 'apart.recurse.rest' rebuilt as a ring of 2 copies by the automatic policy, {{.*}}, as planned
int apart(struct Tree *T) {
  if (!T)
    return 0;
  int Left = apart(T->Left), Right = apart(T->Right);
  return 1 + (Left > Right ? Left : Right);
}

// The pass itself would make a chain of it.
// CHECK-DAG: remark: 'turns' rebuilt for 6 states of {{.*}} (0 to 5) by the automatic policy, {{.*}}, as planned
static int turns(int N) {
  if (N == 0)
    return 1;
  int Sum = 0;
  for (int I = 0; I < N; ++I)
    Sum += turns(N - 1);
  return Sum;
}

// CHECK-DAG: remark: 'chained' rebuilt as a chain of 5 copies by the automatic policy, {{.*}}, as planned
static int chained(int N) {
  if (N == 0)
    return 1;
  int Sum = 0;
  for (int I = 0; I < N; ++I)
    Sum += chained(N - 1) ^ I;
  return Sum;
}
int enter(void) { return turns(5) + chained(4); }

// No number is said.
// CHECK-DAG: remark: 'open' rebuilt as a ring of {{[2-9]}} copies by the automatic policy, with its first test in front of calls, {{.*}}, as planned
int open(struct Tree *T, int Depth) {
  if (!T)
    return Depth;
  int Left = open(T->Left, Depth + 1), Right = open(T->Right, Depth + 1);
  return Left > Right ? Left : Right;
}

//--- obeyed.plan
version: 1
functions:
  - {name: plain, plan: none}
  - {name: fib, plan: ring copies=4}
  - {name: sum, plan: ring copies=3 no-guard no-pass-sum}
  - {name: handed, plan: ring copies=2 guard pass-sum}
  - {name: move, plan: 'leaves levels=4'}
  - {name: apart, plan: split}
  - {name: apart.recurse.rest, plan: ring copies=2}
  - {name: turns, plan: states arguments=1}
  - {name: chained, plan: chain copies=5}
  - {name: open, plan: ring}
