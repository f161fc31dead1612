; A ring stays as the pass has built it where a step is no constant, where a call is bound to something, and where nobody enters it who is known, and none was asked for.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -S %s | FileCheck %s --implicit-check-not=recurse.entry
; RUN: %opt -passes='inlinerecursion,function(require<domtree>),inlinerecursion-ring-inlining' -debug-pass-manager -disable-output %s 2>&1 | FileCheck %s --check-prefix=SAME

; SAME: Running pass: InlineRecursionRingInliningPass on [module]
; SAME-NOT: Invalidating

; CHECK-LABEL: define internal void @no_constant.recurse.clone(
; CHECK-NEXT: %r = srem i32 %n, 2
define internal void @no_constant(i32 %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 2
  %m = sub nsw i32 %n, %r
  call void @no_constant(i32 %m)
  ret void
}

; CHECK-LABEL: define internal void @one_of_two.recurse.clone(
; CHECK-NEXT: %r = srem i32 %n, 2
define internal void @one_of_two(i32 %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 2
  %m = sub nsw i32 %n, 1
  call void @one_of_two(i32 %m)
  %h = sdiv i32 %n, 2
  call void @one_of_two(i32 %h)
  ret void
}

; CHECK-LABEL: define internal void @by_value.recurse.clone(
; CHECK-NEXT: %r = srem i32 %n, 2
define internal void @by_value(i32 %n, ptr byval(i64) %p) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 2
  %m = sub nsw i32 %n, 1
  call void @by_value(i32 %m, ptr byval(i64) %p)
  ret void
}

; CHECK-LABEL: define internal void @vector.recurse.clone(
; CHECK-NEXT: %v = srem <2 x i32> %w, <i32 2, i32 2>
; CHECK-NEXT: %r = urem i32 %n, 2
define internal void @vector(i32 %n, <2 x i32> %w) "specialize-inline-recursion-function" {
  %v = srem <2 x i32> %w, <i32 2, i32 2>
  %r = urem i32 %n, 2
  %m = lshr i32 %n, 1
  call void @vector(i32 %m, <2 x i32> %v)
  ret void
}

; CHECK-LABEL: define internal void @not_entered.recurse.clone(
; CHECK-NEXT: %r = srem i32 %n, 2
define void @not_entered(i32 %n) "specialize-inline-recursion-function"="found" {
  %r = srem i32 %n, 2
  %m = sub nsw i32 %n, 1
  call void @not_entered(i32 %m)
  ret void
}

define void @caller(i32 %n, ptr %p) {
  call void @no_constant(i32 %n)
  call void @one_of_two(i32 %n)
  call void @by_value(i32 %n, ptr byval(i64) %p)
  call void @vector(i32 %n, <2 x i32> zeroinitializer)
  ret void
}
