; A path that is a loop by its tail call, or goes on in a loop of its own, makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK-DAG: remark: <unknown>:0:0: 'f' not chained: a tail call of itself becomes a loop, and where it makes another self call instead, that is in a loop of its own
; CHECK-DAG: 'taken' rebuilt as a ring of 5 copies by the automatic policy
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32

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

declare i32 @next(i32)

define i32 @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %some
some:
  %m = lshr i32 %n, 1
  %star = icmp ult i32 %n, 42
  br i1 %star, label %loop, label %plain
plain:
  %t = tail call i32 @f(i32 %m)
  ret i32 %t
loop:
  %i = phi i32 [ %m, %some ], [ %j, %more ]
  %r = call i32 @f(i32 %i)
  %found = icmp ne i32 %r, 0
  br i1 %found, label %exit, label %more
more:
  %j = add i32 %i, 7
  %again = icmp ult i32 %j, %n
  br i1 %again, label %loop, label %exit
exit:
  %result = phi i32 [ 1, %entry ], [ %r, %loop ], [ 0, %more ]
  ret i32 %result
}
