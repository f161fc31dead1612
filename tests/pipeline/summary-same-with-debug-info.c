// The summary is the same with and without debug information, and so is its place: the
// first function that was decided about and is not gone.
// RUN: %clang_with_pass -O2 -c %s -o %t.o -Rpass-analysis=inlinerecursion 2>&1 | grep instructions | grep -v 'has ' > %t.plain
// RUN: %clang_with_pass -O2 -g -c %s -o %t.o -Rpass-analysis=inlinerecursion 2>&1 | grep instructions | grep -v 'has ' > %t.debug
// RUN: %clang_with_pass -O2 -g -fsave-optimization-record -c %s -o %t.o -Rpass-analysis=inlinerecursion 2>&1 | grep instructions | grep -v 'has ' > %t.recorded
// RUN: FileCheck %s --input-file %t.plain
// RUN: diff %t.plain %t.debug
// RUN: diff %t.plain %t.recorded

int volatile Sink;

static void down(int Depth) {
  int Kept = Depth * 3;
  if (Depth == 0)
    return;
  Sink = Kept;
  down(Depth - 1);
  Sink = Depth;
}
void enter(void) { down(5); }

// CHECK: summary-same-with-debug-info.c:[[#@LINE+2]]:1: remark: 2 recursive functions: 2 rebuilt, 0 not; +[[#]] instructions
// CHECK-NOT: remark
void walk(unsigned N) {
  unsigned Kept = N ^ 3;
  if (!N)
    return;
  walk(N / 2);
  Sink = Kept;
  walk(N / 3);
  Sink = N;
}
