; A call that also passes the function is redirected once, and its argument stays the function.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define i32 @f(
; CHECK:         call i32 @f(ptr %p, i32 %n)
define i32 @f(ptr %p, i32 %n) {
  %r = call i32 @f(ptr %p, i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK-NEXT:    %r = call i32 @f.recurse.clone(ptr @f, i32 %n)
; CHECK-NEXT:    ret i32 %r
define i32 @caller(i32 %n) {
  %r = call i32 @f(ptr @f, i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK:         call i32 @f(ptr %p, i32 %n)
