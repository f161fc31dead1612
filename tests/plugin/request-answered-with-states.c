// What asks for a ring and takes no remainder, but is entered with a constant that takes few values, gets a copy for each of them, and no warning, though little is saved and whatever else may be added for states.
// RUN: %clang_with_pass -I %S/../../include -O3 -Werror -S -o /dev/null %s -Rpass=inlinerecursion 2>&1 | FileCheck %s
// RUN: %clang_with_pass -I %S/../../include -O3 -S -o /dev/null %s -Rpass=inlinerecursion -mllvm -inlinerecursion-auto-requested-growth=10 2>&1 | FileCheck %s --check-prefix=WARNED --implicit-check-not='for 8 states'
// RUN: %clang_with_pass -I %S/../../include -O3 -S -o /dev/null %s -Rpass=inlinerecursion -mllvm -inlinerecursion-auto=false 2>&1 | FileCheck %s --check-prefix=WARNED --implicit-check-not='for 8 states'
// RUN: %clang_with_pass -I %S/../../include -O3 -DNOT_ASKED -S -o /dev/null %s -Rpass=inlinerecursion 2>&1 | FileCheck %s --allow-empty --check-prefix=NOT-ASKED
#include <inlinerecursion/request.h>
#ifdef NOT_ASKED
#undef INLINERECURSION_SPECIALIZE
#define INLINERECURSION_SPECIALIZE
#endif
extern int volatile Sink;

// CHECK: remark: 'walk' rebuilt for 8 states of argument 1 (0 to 7) by the automatic policy
// WARNED: warning: the ring of copies that 'walk' asks for is not built: its entry block takes no remainder of an argument by a constant from 2 to 64; begin it with one, or start it with constants and hand on what follows from them [-Wpass-failed=inlinerecursion]
// NOT-ASKED-NOT: for 8 states
INLINERECURSION_SPECIALIZE static void walk(int N, int K) {
  Sink += K * Sink / 3;
  Sink += K * Sink / 5;
  Sink += K * Sink / 7;
  Sink += K * Sink / 11;
  Sink += K * Sink / 13;
  Sink += K * Sink / 17;
  Sink += K * Sink / 19;
  if (N == 0)
    return;
  walk(N / 2, K + Sink);
  Sink += K;
  walk(N - 1, K * 3);
  Sink += K;
}
void start(int K) { walk(7, K); }
