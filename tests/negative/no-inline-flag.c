// -fno-inline is a wish for all functions: only a requested ring overrules it.
// RUN: %clang_with_pass -I %S/../../include -O2 -fno-inline -mllvm -inline-recursion-opt-level=3 -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -c -o %t.o %s 2>&1 | FileCheck %s
#include <inlinerecursion/request.h>

int use(int);

// CHECK-DAG: 'plain' not chained: it, or a call of it, is not to be inlined
int plain(int N) { return N ? use(N) + 3 * plain(N - 1) : 0; }

// CHECK-DAG: 'found' not chained: it, or a call of it, is not to be inlined
int found(int N) { return use(N % 4) ? use(found(N + 1)) ^ use(found(N + 2)) : 0; }

// CHECK-DAG: 'requested' rebuilt as a ring of 4 copies
INLINERECURSION_SPECIALIZE
int requested(int N) {
  int Rest = N % 4;
  return use(Rest) ? use(requested(N + 1)) ^ use(requested(N + 2)) : 0;
}
