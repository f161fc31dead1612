; A function without a test of its own, called in a short loop, makes no ring if that keeps the loop from being unrolled.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse'
; RUN: sed 's/%%j, 16/%%j, %%n/' %s | %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output - 2>&1 | FileCheck %s --check-prefix=TAKEN
; RUN: sed 's/%%j, 16/%%j, 8/' %s | %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output - 2>&1 | FileCheck %s --check-prefix=TWO

; CHECK: 'f' not chained: the loop around its self call is worth more unrolled
; TAKEN: 'f' rebuilt as a ring of {{[0-9]+}} copies by the automatic policy
; TWO: 'f' rebuilt as a ring of 2 copies by the automatic policy

declare i1 @more()
define void @f(i32 %n, ptr %p) {
entry:
  store i32 %n, ptr %p
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %latch ]
  %some = call i1 @more()
  br i1 %some, label %rec, label %latch
rec:
  call void @f(i32 %i, ptr %p)
  call void @f(i32 %n, ptr %p)
  br label %latch
latch:
  %j = add i32 %i, 1
  %last = icmp eq i32 %j, 16
  br i1 %last, label %exit, label %loop
exit:
  ret void
}
