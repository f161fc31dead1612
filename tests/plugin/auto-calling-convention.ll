; Calls keep the function's calling convention, and the guard has it.
; RUN: %opt -passes='inlinerecursion-auto<copies=2>' -S %s | FileCheck %s

; CHECK: define internal fastcc void @f.recurse.guard(
; CHECK: call fastcc void @f.recurse.clone(

@g = external global i32
define internal fastcc void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
; CHECK-NOT: call void
  call fastcc void @f(i32 %m)
  store i32 %n, ptr @g
  call fastcc void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @caller(i32 %n) {
  call fastcc void @f(i32 %n)
  ret void
}
