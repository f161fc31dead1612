; A function with a loop in front of its self calls makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: remark: <unknown>:0:0: 'f' not chained: it has a loop of its own beside its self calls
; CHECK: 'taken' rebuilt as a ring of 5 copies by the automatic policy
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32
define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %loop ]
  store i32 %i, ptr @g
  %j = add i32 %i, 1
  %more = icmp ult i32 %j, %n
  br i1 %more, label %loop, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  call void @f(i32 %m)
  store i32 %n, ptr @g
  br label %exit
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
