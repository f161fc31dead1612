// Three functions that call themselves and each other, with ten copies each that are always inlined, still compile to an end and compute the same.
// RUN: %clang -O2 %s -o %t.plain && %t.plain > %t.wanted
// RUN: %clang_with_pass -O2 -mllvm -inline-recursion-opt-level=4 -mllvm -maximum-clone-limit-inline-recursion=30 -mllvm -inline-recursion-max-callsite-mod=1000 -mllvm -inlinerecursion-find-requests=false -Rpass=inlinerecursion %s -o %t 2>&1 | FileCheck %s
// RUN: %t | cmp %t.wanted -
// CHECK-DAG: 'one' rebuilt as a chain of 10 copies
// CHECK-DAG: 'two' rebuilt as a chain of 10 copies
// CHECK-DAG: 'three' rebuilt as a chain of 10 copies
#include <stdio.h>

static unsigned two(unsigned N);
static unsigned three(unsigned N);

static unsigned one(unsigned N) {
  if (N < 3)
    return N;
  return one(N - 3) * 3 + two(N / 2) + three(N / 3);
}
static unsigned two(unsigned N) {
  if (N < 3)
    return N + 1;
  return two(N - 3) * 5 + three(N / 2) + one(N / 3);
}
static unsigned three(unsigned N) {
  if (N < 3)
    return N + 2;
  return three(N - 3) * 7 + one(N / 2) + two(N / 3);
}

int main(int Argc, char **Argv) { printf("%u\n", one(60 * Argc)); }
