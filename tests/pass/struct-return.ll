; Results of struct type, and all their uses, survive the redirection.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define { i32, double } @f(
; CHECK:         call { i32, double } @f(i32 %n)
define { i32, double } @f(i32 %n) {
  %r = call { i32, double } @f(i32 %n)
  ret { i32, double } %r
}

; CHECK-LABEL: define double @caller(
; CHECK-NEXT:    %r = call { i32, double } @f.recurse.clone(i32 %n)
; CHECK-NEXT:    %i = extractvalue { i32, double } %r, 0
; CHECK-NEXT:    %d = extractvalue { i32, double } %r, 1
; CHECK-NEXT:    store { i32, double } %r, ptr @sink
define double @caller(i32 %n) {
  %r = call { i32, double } @f(i32 %n)
  %i = extractvalue { i32, double } %r, 0
  %d = extractvalue { i32, double } %r, 1
  store { i32, double } %r, ptr @sink
  ret double %d
}

@sink = global { i32, double } zeroinitializer

; CHECK-LABEL: define internal { i32, double } @f.recurse.clone(
; CHECK:         call { i32, double } @f(i32 %n)
