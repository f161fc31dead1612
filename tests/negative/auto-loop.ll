; A function that becomes a loop makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: remark: <unknown>:0:0: 'f' not chained: its recursion becomes a loop
; CHECK: 'taken' rebuilt as a ring of 5 copies by the automatic policy
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32
define i32 @f(i32 %n, i32 %k) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %odd = trunc i32 %k to i1
  br i1 %odd, label %up, label %down
up:
  %a = call i32 @f(i32 %k, i32 %n)
  ret i32 %a
down:
  %m = udiv i32 %n, 3
  %b = call i32 @f(i32 %m, i32 %n)
  ret i32 %b
exit:
  ret i32 %k
}

define void @taken(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @taken(i32 %m)
  store i32 %n, ptr @g
  call void @taken(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
