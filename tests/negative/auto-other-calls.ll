; A function that calls others more often than itself spends its time there.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s

; CHECK: 'f' not chained: it makes 3 other calls, more than 1 for each self call
; CHECK: 'taken' rebuilt as a ring of

declare void @other()
define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @other()
  call void @f(i32 %m)
  call void @other()
  call void @f(i32 %m)
  call void @other()
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
  call void @other()
  call void @taken(i32 %m)
  call void @other()
  br label %exit
exit:
  ret void
}
