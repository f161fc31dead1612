; LLVM times one pass at a time; a pass that runs others must not be counted.

; RUN: %opt -passes=inlinerecursion-promotion -time-passes -S %s 2>&1 | FileCheck %s
; RUN: %opt -passes='default<O2>' -time-passes -disable-output %s

; CHECK: define internal i32 @f(

define internal i32 @f(ptr %p, i32 %n) {
  %c = icmp eq i32 %n, 0
  br i1 %c, label %b, label %a
a:
  %m = sub i32 %n, 1
  %r = call i32 @f(ptr %p, i32 %m)
  %s = mul i32 %r, 3
  ret i32 %s
b:
  %v = load i32, ptr %p
  ret i32 %v
}

define i32 @g(ptr dereferenceable(4) %p, i32 %n) {
  %r = call i32 @f(ptr %p, i32 %n)
  ret i32 %r
}
