; Arguments that are no constants stay open, and a constant that changes to no constant on the way does so too.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='define internal void @f.specialized'

declare void @use(i32, i32, i32)

; The second argument becomes open at the first self call.
define internal void @f(i32 %n, i32 %lost, i32 %open) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @use(i32 %r, i32 %lost, i32 %open)
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %rec
rec:
  %m = sub i32 %n, 1
  call void @f(i32 %m, i32 %open, i32 %open)
  br label %out
out:
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK: call void @f.specialized.2.9._(i32 2, i32 9, i32 %x)
define void @caller(i32 %x) {
  call void @f(i32 2, i32 9, i32 %x)
  ret void
}

; CHECK: define internal void @f.specialized.2.9._(i32 %n, i32 %lost, i32 %open)
; CHECK-NEXT: call void @use(i32 2, i32 9, i32 %open)
; CHECK-NEXT: call void @f.specialized.1._._(i32 1, i32 %open, i32 %open)
; CHECK: define internal void @f.specialized.1._._(i32 %n, i32 %lost, i32 %open)
; CHECK-NEXT: call void @use(i32 1, i32 %lost, i32 %open)
; CHECK-NEXT: call void @f.specialized.0._._(i32 0, i32 %open, i32 %open)
; CHECK: define internal void @f.specialized.0._._(
