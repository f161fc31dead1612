; A call without a result is redirected like one with a result.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define void @f(
; CHECK:         call void @f()
define void @f() {
  call void @f()
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK-NEXT:    call void @f.recurse.clone()
; CHECK-NEXT:    ret void
define void @caller() {
  call void @f()
  ret void
}

; CHECK-LABEL: define internal void @f.recurse.clone(
; CHECK-NEXT:    call void @f()
; CHECK-NEXT:    ret void
