; A variadic function is called with the arguments of the call it replaces, few or many.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define i32 @f(i32 %n, ...)
; CHECK:         call i32 (i32, ...) @f(i32 %n, i64 7)
define i32 @f(i32 %n, ...) {
  %r = call i32 (i32, ...) @f(i32 %n, i64 7)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK:         %a = call i32 (i32, ...) @f.recurse.clone(i32 1)
; CHECK:         %b = call i32 (i32, ...) @f.recurse.clone(i32 %a, double 2.000000e+00, ptr null, i8 3)
define i32 @caller() {
  %a = call i32 (i32, ...) @f(i32 1)
  %b = call i32 (i32, ...) @f(i32 %a, double 2.0, ptr null, i8 3)
  ret i32 %b
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(i32 %n, ...)
; CHECK:         call i32 (i32, ...) @f(i32 %n, i64 7)
