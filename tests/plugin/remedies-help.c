// Where a remark ends with what can be done, that helps.
// RUN: %clang_with_pass -O3 -c %s -o %t.o -Rpass=inlinerecursion -Rpass-missed=inlinerecursion 2>&1 | grep remark: | FileCheck %s --check-prefix=LEFT
// RUN: %clang_with_pass -O3 -c %s -o %t.o -DMENDED -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -mllvm -inlinerecursion-auto-module-growth=9000 2>&1 | grep remark: | FileCheck %s --check-prefix=BUILT --implicit-check-not='not chained'
// A record has it by itself.
// RUN: %clang_with_pass -O3 -c %s -o %t.o -fsave-optimization-record -foptimization-record-file=%t.yaml
// RUN: FileCheck %s --check-prefix=RECORD --input-file=%t.yaml
// Here it is the optimisation level that helps.
// RUN: %clang_with_pass -O2 -DLARGE -c %s -o %t.o -Rpass=inlinerecursion -Rpass-missed=inlinerecursion 2>&1 | grep remark: | FileCheck %s --check-prefix=O2
// RUN: %clang_with_pass -O3 -DLARGE -c %s -o %t.o -Rpass=inlinerecursion -Rpass-missed=inlinerecursion 2>&1 | grep remark: | FileCheck %s --check-prefix=O3 --implicit-check-not='not chained'
// RUN: %clang_with_pass -O3 -DLARGE -c %s -o %t.o -Rpass-missed=inlinerecursion -mllvm -inlinerecursion-auto-function-growth=75 2>&1 | grep remark: | FileCheck %s --check-prefix=RAISE
// RUN: %clang_with_pass -Os -DLARGE -c %s -o %t.o -Rpass-missed=inlinerecursion 2>&1 | grep remark: | FileCheck %s --check-prefix=OS
// RECORD: Name: NoInline
// RECORD: - String: 'it, or a call of it, is not to be inlined (noinline)'
// RECORD-NEXT: - String: '; '
// RECORD-NEXT: - Remedy: remove noinline
// RECORD-NEXT: ...
#include <setjmp.h>
#include <stdarg.h>

extern int volatile Sink;
int volatile Sink;
typedef struct Tree {
  struct Tree *Left, *Right;
  long Value;
} Tree;

#ifdef LARGE
// O2-DAG: 'large' not chained: two copies of its {{.*}} bytes; compile with -O3 [-Rpass
// O3-DAG: 'large' rebuilt as
// RAISE-DAG: 'large' not chained: {{.*}} bytes; raise -inlinerecursion-auto-function-growth [-Rpass
// OS-DAG: 'large' not chained: it is to be optimised for size; compile it with -O2 or -O3 [-Rpass
// Its test is large as well, and comes in front of each call of each copy.
void large(Tree *T, long Least, long Most) {
  if (!T || T->Value < Least || T->Value > Most || T->Value * 3 == Least ||
      T->Value % 7 == Most || (T->Value ^ Least) == 5 ||
      (T->Value | Most) == 11 || T->Value * Least == Most ||
      (T->Value & Least) == 6 || (T->Value & Most) == 9)
    return;
  large(T->Left, Least, Most);
  Sink = 1;
  large(T->Right, Least, Most);
  Sink = 2;
  large(T->Left->Left, Least, Most);
  Sink = 3;
  large(T->Right->Right, Least, Most);
  Sink = 4;
}
#else
#ifdef MENDED
#define OR(Bad, Good) Good
#else
#define OR(Bad, Good) Bad
#endif

// LEFT-DAG: 'byValue' not chained: an argument is copied to the stack by every call; pass it by pointer [-Rpass
// BUILT-DAG: 'byValue' rebuilt
typedef struct Box {
  long Slots[10];
} Box;
void byValue(Box OR(B, *B), int N) {
  if (N < 2)
    return;
  byValue(B, N - 1);
  Sink = B OR(., ->) Slots[N];
  byValue(B, N - 2);
  Sink = N;
}

// LEFT-DAG: 'variadic' not chained: it takes variable arguments, which cannot be handed on; take a va_list in place of them [-Rpass
// BUILT-DAG: 'variadic' rebuilt
void variadic(int N, OR(..., va_list Args)) {
  if (N < 2)
    return;
  variadic(N - 1, OR(N, Args));
  Sink = N;
  variadic(N - 2, OR(N, Args));
  Sink = N;
}

// LEFT-DAG: 'jumps' not chained: it calls a function that returns twice, and is not inlined; call setjmp outside of it [-Rpass
// BUILT-DAG: 'jumps' rebuilt
static jmp_buf Place;
void jumps(int N) {
  if (N < 2)
    return;
  jumps(N - 1);
  Sink = OR(setjmp(Place), N);
  jumps(N - 2);
  Sink = N;
}
void jump(int N) {
  if (!setjmp(Place))
    jumps(N);
}

// LEFT-DAG: 'untested' not chained: no test {{.*}}; test first whether there is anything to do [-Rpass
// BUILT-DAG: 'untested' rebuilt
void untested(Tree *T) {
  OR(, if (!T) return);
  Sink = T->Value;
  untested(T->Left);
  Sink = T->Value;
  untested(T->Right);
  Sink = T->Value;
}

// LEFT-DAG: 'weak' not chained: another definition may take its place; make it static [-Rpass
// BUILT-DAG: 'weak' rebuilt
OR(__attribute__((weak)), static) void weak(int N) {
  if (N < 2)
    return;
  weak(N - 1);
  Sink = N;
  weak(N - 2);
  Sink = N;
}
void callWeak(int N) { weak(N); }

// LEFT-DAG: 'label' not chained: inline assembly in it defines a symbol; use numeric labels, or %= in their names [-Rpass
// BUILT-DAG: 'label' rebuilt
void label(int N) {
  if (N < 2)
    return;
  label(N - 1);
  __asm__ volatile(OR("here:", "here%=:" ::));
  label(N - 2);
  Sink = N;
}

// LEFT-DAG: 'jumpTable' not chained: the address of one of its labels is taken; use a switch in place of the computed goto [-Rpass
// BUILT-DAG: 'jumpTable' rebuilt
void jumpTable(int N) {
#ifdef MENDED
  switch (N) {
  case 0:
    return;
  case 1:
    Sink = 3;
    return;
  }
#else
  static void *Labels[] = {&&End, &&One, &&Many};
  goto *Labels[N < 2 ? N : 2];
One:
  Sink = 3;
End:
  return;
Many:
#endif
  jumpTable(N - 1);
  Sink = N;
  jumpTable(N - 2);
  Sink = N;
}

// LEFT-DAG: 'frame' not chained: its local variables take {{.*}}; keep large variables elsewhere [-Rpass
// BUILT-DAG: 'frame' rebuilt
void frame(int N, int *Given) {
  if (N < 2)
    return;
  OR(int Slots[70], int *Slots = Given);
  frame(N - 1, Slots);
  Sink = Slots[N];
  frame(N - 2, Slots);
  Sink = N;
}

// LEFT-DAG: 'notInlined' not chained: it, or a call of it, is not to be inlined (noinline); remove noinline [-Rpass
// BUILT-DAG: 'notInlined' rebuilt
OR(__attribute__((noinline)), ) void notInlined(int N) {
  if (N < 2)
    return;
  notInlined(N - 1);
  Sink = N;
  notInlined(N - 2);
  Sink = N;
}

// LEFT-DAG: 'cold' not chained: it is rarely called (cold); remove cold [-Rpass
// BUILT-DAG: 'cold' rebuilt
OR(__attribute__((cold)), ) void cold(int N) {
  if (N < 2)
    return;
  cold(N - 1);
  Sink = N;
  cold(N - 2);
  Sink = N;
}

// LEFT-DAG: 'plain' not chained: it is not to be optimised (optnone); remove optnone [-Rpass
// BUILT-DAG: 'plain' rebuilt
OR(__attribute__((optnone, noinline)), ) void plain(int N) {
  if (N < 2)
    return;
  plain(N - 1);
  Sink = N;
  plain(N - 2);
  Sink = N;
}
#endif
