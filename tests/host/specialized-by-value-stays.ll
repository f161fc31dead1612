; What the callee owns a copy of is not replaced by the address that the caller passed.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

@g = global i64 0

define internal void @byval(i32 %n, ptr byval(i64) %p) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  store i64 1, ptr %p
  call void @byval(i32 %r, ptr byval(i64) %p)
  ret void
}

define internal void @alloca(i32 %n, ptr inalloca(i64) %p) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  store i64 2, ptr %p
  call void @alloca(i32 %r, ptr inalloca(i64) null)
  ret void
}

define void @caller() {
  call void @byval(i32 0, ptr byval(i64) @g)
  call void @alloca(i32 0, ptr inalloca(i64) @g)
  ret void
}

; CHECK: define internal void @byval.specialized.0._(
; CHECK-NEXT: store i64 1, ptr %p
; CHECK: define internal void @alloca.specialized.0._(
; CHECK-NEXT: store i64 2, ptr %p
