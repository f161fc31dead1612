; A request is withdrawn where the loop around the self call is one that the compiler
; unrolls, and copies could not be aligned: here the argument does not step by a
; constant.
; RUN: %opt -passes='inlinerecursion-pipeline<no-auto>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse'

; CHECK: remark: <unknown>:0:0: 'f' not chained: request withdrawn, the loop around its self call is worth more unrolled
; CHECK: define void @f(i32 %n)
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32

define void @f(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = urem i32 %n, 4
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %loop ]
  store i32 %r, ptr @g
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  %j = add i32 %i, 1
  %again = icmp ult i32 %j, 4
  br i1 %again, label %loop, label %exit
exit:
  ret void
}

; Without the loop it is granted.
define void @taken(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = urem i32 %n, 4
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  store i32 %r, ptr @g
  %m = lshr i32 %n, 1
  call void @taken(i32 %m)
  br label %exit
exit:
  ret void
}
