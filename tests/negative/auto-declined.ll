; What the estimator declines makes no ring either: a scan that is worth more unrolled.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse'
; RUN: sed 's/urem i32 %%v, %%d/urem i32 %%v, %%n/' %s | %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output - 2>&1 | FileCheck %s --check-prefix=TAKEN

; CHECK: remark: <unknown>:0:0: 'f' not chained: its loop around the recursive call is worth more unrolled
; TAKEN: 'f' rebuilt as a ring of {{[0-9]+}} copies by the automatic policy

@g = global i32 0

define internal void @f(i32 %n) {
entry:
  %stop = icmp eq i32 %n, 4
  br i1 %stop, label %leaf, label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %latch ]
  %v = load i32, ptr @g
  %odd = trunc i32 %v to i1
  %d = add i32 %i, 3
  %q = urem i32 %v, %d
  store i32 %q, ptr @g
  br i1 %odd, label %call, label %latch
call:
  %next = add i32 %n, 1
  call void @f(i32 %next)
  call void @f(i32 %v)
  br label %latch
latch:
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 7
  br i1 %last, label %leaf, label %loop
leaf:
  ret void
}
define void @main() {
  call void @f(i32 0)
  ret void
}
