; A clone is simplified while it is made.  That a square is no square of two is
; a question about the argument that looks at the entry block of the argument's
; function, which must be complete.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

; CHECK-LABEL: define internal i32 @f.specialized.3._(i32 %n, i32 %x)
; CHECK: call i32 @f.specialized.2._(i32 2, i32 %x)

define internal i32 @f(i32 %n, i32 %x) "specialize-inline-recursion-function" {
entry:
  %k = srem i32 %n, 4
  %done = icmp sle i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 %k
rec:
  %sq = mul i32 %x, %x
  %low = and i32 %sq, 3
  %is2 = icmp eq i32 %low, 2
  %m = sub nsw i32 %n, 1
  %r = call i32 @f(i32 %m, i32 %x)
  %z = zext i1 %is2 to i32
  %s = sub i32 %r, %z
  %t = mul i32 %s, %k
  ret i32 %t
}

define i32 @main(i32 %x) {
  %r = call i32 @f(i32 3, i32 %x)
  ret i32 %r
}
