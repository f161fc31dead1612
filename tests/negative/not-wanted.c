// A function whose source wants no copies is left alone, by the automatic policy and by
// the pass, also beside a request; in C++ and by declarations ahead as well.
// RUN: %clang_with_pass -I %S/../../include -O3 -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -S -emit-llvm -fno-discard-value-names -o %t.ll %s 2>&1 | FileCheck %s
// RUN: FileCheck %s --check-prefix=IR --implicit-check-not='@{{(walk|asked|declared)}}.recurse' --input-file=%t.ll
#include <inlinerecursion/request.h>

extern int Sum;
struct Node { struct Node *Left, *Right; };

// CHECK-DAG: remark: 'walk' not chained: its source wants no copies of it (INLINERECURSION_NONE)
INLINERECURSION_NONE void walk(struct Node *N) {
  if (!N)
    return;
  walk(N->Left);
  Sum ^= 3;
  walk(N->Right);
  Sum += 1;
}

// CHECK-DAG: remark: 'asked' not chained: its source wants no copies of it (INLINERECURSION_NONE)
INLINERECURSION_NONE INLINERECURSION_SPECIALIZE void asked(int N) {
  int Rest = N % 4;
  if (N <= 0)
    return;
  Sum ^= Rest;
  asked(N - 1);
  Sum += 1;
}

INLINERECURSION_NONE void declared(struct Node *N);
// CHECK-DAG: remark: 'declared' not chained: its source wants no copies of it (INLINERECURSION_NONE)
void declared(struct Node *N) {
  if (!N)
    return;
  declared(N->Left);
  Sum ^= 5;
  declared(N->Right);
  Sum += 1;
}

// CHECK-DAG: remark: 'taken' rebuilt as a ring
// IR: @taken.recurse.clone
void taken(struct Node *N) {
  if (!N)
    return;
  taken(N->Left);
  Sum ^= 7;
  taken(N->Right);
  Sum += 1;
}
