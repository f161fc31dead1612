// A chained program is the same under every kind of instrumentation and layout.
// DEFINE: %{flags} =
// DEFINE: %{compiler} = %clang_with_pass
// DEFINE: %{build} = %{compiler} -O2 %{flags} -Rpass=inlinerecursion %s -o %t -mllvm
// DEFINE: %{same} = %{build} -inline-recursion-opt-level=3 2>&1 | FileCheck %s --check-prefix=THREE && env LLVM_PROFILE_FILE=%t.raw %t | cmp %t.wanted - && %{build} -inline-recursion-opt-level=4 2>&1 | FileCheck %s --check-prefix=FOUR && env LLVM_PROFILE_FILE=%t.raw %t | cmp %t.wanted -
// THREE: '{{.*sum.*}}' rebuilt as a chain of 1 copy
// FOUR: '{{.*sum.*}}' rebuilt as a chain of 10 copies
// RUN: rm -rf %t.work && mkdir -p %t.work && cd %t.work
// RUN: %clang -O2 %s -o %t.plain && %t.plain > %t.wanted
// RUN: FileCheck %s --check-prefix=WANTED < %t.wanted
// WANTED: 189 434 316 292
// RUN: %{same}
// REDEFINE: %{flags} = -fsanitize=address
// RUN: %{same}
// REDEFINE: %{flags} = -fsanitize=undefined -fno-sanitize-recover=all
// RUN: %{same}
// REDEFINE: %{flags} = -fsanitize=kcfi
// RUN: %{same}
// REDEFINE: %{flags} = -fxray-instrument -fxray-instruction-threshold=1
// RUN: %{same}
// REDEFINE: %{flags} = -pg
// RUN: %{same}
// REDEFINE: %{flags} = -finstrument-functions -DHOOKS
// RUN: %{same}
// REDEFINE: %{flags} = -fstack-protector-all
// RUN: %{same}
// REDEFINE: %{flags} = -fcf-protection=full
// RUN: %{same}
// REDEFINE: %{flags} = -fpatchable-function-entry=4,2
// RUN: %{same}
// REDEFINE: %{flags} = -fbasic-block-sections=all
// RUN: %{same}
// REDEFINE: %{flags} = -fprofile-instr-generate -fcoverage-mapping
// RUN: %{same}
// REDEFINE: %{flags} = -fprofile-generate
// RUN: %{same}
// REDEFINE: %{flags} = -fsplit-stack
// RUN: %{same}
// In C++ only:
// REDEFINE: %{compiler} = %clangxx -x c++ -fpass-plugin=%plugin -Xclang -load -Xclang %plugin
// REDEFINE: %{flags} = -fsanitize=function -fno-sanitize-recover=all
// RUN: %{same}
#include <stdio.h>

#ifdef HOOKS
static long Entered, Left;
__attribute__((no_instrument_function)) void __cyg_profile_func_enter(void *F,
                                                                      void *C) {
  ++Entered;
}
__attribute__((no_instrument_function)) void __cyg_profile_func_exit(void *F,
                                                                     void *C) {
  ++Left;
}
#endif

static unsigned sum(unsigned *Values, unsigned N) {
  if (N == 0)
    return 0;
  Values[N & 31] += N;
  return Values[N & 31] + sum(Values, N - 1) / 3;
}

static unsigned (*volatile Indirect)(unsigned *, unsigned) = sum;

int main(int Argc, char **Argv) {
  unsigned Values[32] = {0};
  unsigned A = sum(Values, 127 * Argc);
  unsigned B = Indirect(Values, 20 * Argc);
  printf("%u %u %u %u\n", A, B, Values[31], Values[20]);
#ifdef HOOKS
  if (Entered != Left + 1)
    printf("entered %ld, left %ld\n", Entered, Left);
#endif
  return 0;
}
