; Self calls by invoke lead around the ring as calls do.
; RUN: %opt -passes='inlinerecursion-auto<copies=2>' -S %s | FileCheck %s

; CHECK: define internal i32 @f.recurse.clone(
; CHECK: invoke i32 @[[SECOND:f.recurse.clone[.0-9]+]](i32 %m)
; CHECK: call i32 @f.recurse.guard(
; CHECK: define internal i32 @[[SECOND]](
; CHECK: invoke i32 @f.recurse.guard(i32 %m)
; CHECK: call i32 @f.recurse.guard(
; CHECK: define internal i32 @f.recurse.guard(
; CHECK: call i32 @f.recurse.clone(

declare i32 @personality(...)
define internal i32 @f(i32 %n) personality ptr @personality {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = udiv i32 %n, 3
  %a = invoke i32 @f(i32 %m) to label %on unwind label %pad
on:
  %b = call i32 @f(i32 %a)
  %c = sub i32 %b, %a
  br label %exit
exit:
  %r = phi i32 [ 7, %entry ], [ %c, %on ]
  ret i32 %r
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
