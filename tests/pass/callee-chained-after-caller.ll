; A copy that calls another recursive function is redirected when that one is chained after it.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define i32 @g(
; CHECK:         call i32 @f.recurse.clone(i32 %n)
; CHECK:         call i32 @g(i32 %a)
define i32 @g(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @g(i32 %a)
  ret i32 %b
}

; CHECK-LABEL: define i32 @f(
; CHECK:         call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define internal i32 @g.recurse.clone(
; CHECK:         call i32 @f.recurse.clone(i32 %n)
; CHECK:         call i32 @g(i32 %a)
; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK:         call i32 @f(i32 %n)
