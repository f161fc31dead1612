// INLINERECURSION_COPIES gets as many copies as it says, where the policy alone would make another number of them or none; who does not get them is warned, and told which rule refused.
// RUN: %clangxx -fpass-plugin=%plugin -std=c++17 -I %S/../../include -O2 -Rpass=inlinerecursion -fno-caret-diagnostics -S -emit-llvm -o %t.ll %s 2>&1 | FileCheck %s --implicit-check-not=warning:
// RUN: FileCheck %s --check-prefix=IR < %t.ll
// RUN: %clangxx -fpass-plugin=%plugin -std=c++17 -I %S/../../include -Os -DGRANTED -Werror -Rpass=inlinerecursion -fno-caret-diagnostics -S -emit-llvm -o /dev/null %s 2>&1 | FileCheck %s --check-prefix=SIZE
// RUN: %clangxx -fpass-plugin=%plugin -Xclang -load -Xclang %plugin -std=c++17 -I %S/../../include -O2 -DGRANTED -mllvm -inlinerecursion-auto=false -S -emit-llvm -o /dev/null %s 2>&1 | FileCheck %s --check-prefix=OFF
// RUN: %clangxx -fpass-plugin=%plugin -Xclang -load -Xclang %plugin -std=c++17 -I %S/../../include -O2 -DGRANTED -mllvm -inlinerecursion-auto-requested-growth=100 -S -emit-llvm -o /dev/null %s 2>&1 | FileCheck %s --check-prefix=BOUND
#include <inlinerecursion/request.h>
extern int Sum;
void other(int), another(int), third(int);

// CHECK-DAG: remark: 'walk' rebuilt as a ring of 6 copies by the automatic policy
// SIZE-DAG: remark: 'walk' rebuilt as a ring of 6 copies by the automatic policy
// OFF-DAG: warning: the 6 copies that 'walk' asks for are not built: the automatic policy is off [-Wpass-failed=inlinerecursion]
// BOUND-DAG: warning: the 6 copies that 'walk' asks for are not built: so many copies of its {{[0-9]+}} instructions {{.*}} would take more than 100 instructions
extern "C" INLINERECURSION_COPIES(6) void walk(int N) {
  if (N <= 0)
    return;
  walk(N / 2);
  Sum += N;
  walk(N / 3);
}

// The policy alone: AutoOtherCalls.
// CHECK-DAG: remark: 'busy' rebuilt as a ring of 2 copies by the automatic policy
extern "C" INLINERECURSION_COPIES(2) void busy(int N) {
  if (N <= 0)
    return;
  other(N), another(N), third(N);
  busy(N / 2);
  other(N);
}

// CHECK-DAG: remark: '_ZN4Tree6heightILi3EEEiPKS_' rebuilt as a ring of 4 copies by the automatic policy
struct Tree {
  Tree *Left, *Right;
  template <int N>
  INLINERECURSION_COPIES(N + 1) static int height(const Tree *T) {
    if (!T)
      return 0;
    int L = height<N>(T->Left), R = height<N>(T->Right);
    return 1 + (L > R ? L : R);
  }
  INLINERECURSION_COPIES(3) int count() const;
};
// CHECK-DAG: remark: '_ZNK4Tree5countEv' rebuilt as a ring of 3 copies by the automatic policy
int Tree::count() const {
  return 1 + (Left ? Left->count() : 0) + (Right ? Right->count() : 0);
}
int measure(const Tree *T) { return Tree::height<3>(T); }

// A chain, where the depth is known and no greater.
// CHECK-DAG: remark: '{{.*}}depth{{.*}}' rebuilt as a chain of 5 copies by the automatic policy
static INLINERECURSION_COPIES(5) int depth(int Level, int Worth) {
  if (Level == 0)
    return Worth;
  int A = depth(Level - 1, Worth * 3);
  int B = depth(Level - 1, Worth ^ A);
  return A > B ? A : B;
}
int enter(int Worth) { return depth(4, Worth); }

#ifndef GRANTED
// CHECK-DAG: warning: the 3 copies that 'weak' asks for are not built: another definition may take its place; {{.*}} [-Wpass-failed=inlinerecursion]
extern "C" INLINERECURSION_COPIES(3) __attribute__((weak)) void weak(int N) {
  if (N > 0)
    weak(N - 1), Sum += N;
}
// CHECK-DAG: warning: the 3 copies that 'loop' asks for are not built: its recursion becomes a loop
extern "C" INLINERECURSION_COPIES(3) int loop(int N) {
  return N <= 0 ? 0 : N + loop(N - 1);
}
// CHECK-DAG: warning: the 900 copies that 'many' asks for are not built: so many copies of its {{[0-9]+}} instructions {{.*}} would take more than 10000 instructions
// The function is decided about like any other.
// CHECK-DAG: remark: 'many' rebuilt as a ring of {{[2-9]}} copies
extern "C" INLINERECURSION_COPIES(900) void many(int N) {
  if (N <= 0)
    return;
  many(N / 2);
  Sum += N;
  many(N / 3);
}
// CHECK-DAG: warning: the 3 copies that 'flat' asks for are not built: it does not call itself
extern "C" INLINERECURSION_COPIES(3) void flat(int N) { Sum += N; }

// CHECK-DAG: warning: the copies that 'one' asks for are not built: INLINERECURSION_COPIES takes one integer from 2 to 1000
extern "C" INLINERECURSION_COPIES(1) void one(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'minus' asks for are not built: INLINERECURSION_COPIES takes
extern "C" INLINERECURSION_COPIES(-3) void minus(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'huge' asks for are not built: INLINERECURSION_COPIES takes
extern "C" INLINERECURSION_COPIES(1001) void huge(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'fraction' asks for are not built: INLINERECURSION_COPIES takes
extern "C" INLINERECURSION_COPIES(2.5) void fraction(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'word' asks for are not built: INLINERECURSION_COPIES takes
extern "C" INLINERECURSION_COPIES("3") void word(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'two' asks for are not built: INLINERECURSION_COPIES takes
extern "C" __attribute__((annotate("inlinerecursion-copies", 3, 4))) void two(int N) { Sum += N; }
// CHECK-DAG: warning: the copies that 'none' asks for are not built: INLINERECURSION_COPIES takes
extern "C" __attribute__((annotate("inlinerecursion-copies"))) void none(int N) { Sum += N; }
#endif

// What was granted or refused leaves no mark.
// IR-NOT: "inlinerecursion-copies"=
