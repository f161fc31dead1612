; A function that tests nothing before it calls itself makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: remark: <unknown>:0:0: 'f' not chained: no test stands in front of its self calls, neither at its entry nor at each of them
; CHECK: 'taken' rebuilt as a ring of 5 copies by the automatic policy
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32
declare i1 @more()
define void @f(i32 %n) {
entry:
  br label %loop
loop:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  call void @f(i32 %n)
  %again = call i1 @more()
  br i1 %again, label %loop, label %exit
exit:
  ret void
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
