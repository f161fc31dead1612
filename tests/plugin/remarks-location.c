// clang shows the remark at the function, and only if asked.
// RUN: %clang_with_pass -O2 -mllvm -inline-recursion-opt-level=3 -Rpass=inlinerecursion -c -o /dev/null %s 2>&1 | FileCheck %s
// RUN: %clang_with_pass -O2 -mllvm -inline-recursion-opt-level=3 -c -o /dev/null %s 2>&1 | count 0

// CHECK: remarks-location.c:[[#@LINE+1]]:1: remark: 'factorial' rebuilt as a chain of 1 copy at level 3 [-Rpass=inlinerecursion]
int factorial(int N) { return N < 2 ? 1 : N * factorial(N - 1); }
