// A function that the source calls cold is told to be that, although clang marks it as
// one to be optimised for size as well.
// RUN: %clang_with_pass -O2 -Rpass-missed=inlinerecursion -c %s -o /dev/null 2>&1 | FileCheck %s

// CHECK: cold-from-c.c:[[#@LINE+1]]:{{[0-9]+}}: remark: 'f' not chained: it is rarely called (cold)
__attribute__((cold)) int f(int n) {
  return n < 2 ? n : f(n - 1) ^ f(n - 2) * 3;
}
