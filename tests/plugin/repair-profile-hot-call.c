// With a sample profile, a call of a copy is as hot as the call was, and is inlined; the inliner takes calls without a weight for cold ones.
// RUN: %clang_with_pass -O2 -gline-tables-only -fprofile-sample-use=%S/Inputs/hot-call.prof -mllvm -inline-recursion-opt-level=3 -Rpass=inline -Rpass-missed=inline -S -emit-llvm -o %t.ll %s 2>&1 | FileCheck %s
// CHECK: 'walk.recurse.clone' inlined into 'main'
unsigned read(void);

static unsigned walk(unsigned N, unsigned *X) {
  *X ^= N;
  if (N % 3 == 0)
    return 1;
  unsigned R = walk(N / 2, X);
  return R * N + *X;
}

int main(int Argc, char **Argv) {
  unsigned Sum = 0, X = 0;
  for (unsigned I = 1; I < 3000 * Argc; ++I)
    Sum += walk(read(), &X);
  return Sum + X;
}
