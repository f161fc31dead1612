; An undefined value may be another one at every use, so it is not followed.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='@vector.specialized' --implicit-check-not='@scalar.specialized' --implicit-check-not='@poison.specialized'

define internal <2 x i32> @vector(i32 %n, <2 x i32> %v) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call <2 x i32> @vector(i32 %r, <2 x i32> %v)
  ret <2 x i32> %v
}

define internal i32 @scalar(i32 %n, i32 %v) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call i32 @scalar(i32 %r, i32 %v)
  ret i32 %v
}

define internal i32 @poison(i32 %n, i32 %v) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call i32 @poison(i32 %r, i32 %v)
  ret i32 %v
}

; CHECK-LABEL: define void @caller(
; CHECK: call <2 x i32> @vector.recurse.clone(i32 %n, <2 x i32> <i32 0, i32 undef>)
; CHECK: call i32 @scalar.recurse.clone(i32 %n, i32 undef)
; CHECK: call i32 @poison.recurse.clone(i32 %n, i32 poison)
define void @caller(i32 %n) {
  %v = call <2 x i32> @vector(i32 %n, <2 x i32> <i32 0, i32 undef>)
  %s = call i32 @scalar(i32 %n, i32 undef)
  %p = call i32 @poison(i32 %n, i32 poison)
  ret void
}
