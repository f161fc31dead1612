; Two rings whose functions call each other are specialised each from its own body.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

declare void @used_by_f(i32)
declare void @used_by_g(i32)

define internal void @f(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @used_by_f(i32 %r)
  %done = icmp ult i32 %n, 2
  br i1 %done, label %out, label %rec
rec:
  %m1 = sub i32 %n, 1
  %m2 = sub i32 %n, 2
  call void @f(i32 %m1)
  call void @g(i32 %m2)
  br label %out
out:
  ret void
}

define internal void @g(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @used_by_g(i32 %r)
  %done = icmp ult i32 %n, 2
  br i1 %done, label %out, label %rec
rec:
  %m1 = sub i32 %n, 1
  %m2 = sub i32 %n, 2
  call void @g(i32 %m1)
  call void @f(i32 %m2)
  br label %out
out:
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK-NEXT: call void @f.specialized.3(i32 3)
; CHECK-NEXT: call void @g.specialized.2(i32 2)
define void @caller() {
  call void @f(i32 3)
  call void @g(i32 2)
  ret void
}

; What f's specialisations call of g's ring is no entry that was selected.
; CHECK: define internal void @f.specialized.3(
; CHECK-NEXT: call void @used_by_f(i32 3)
; CHECK-NEXT: call void @f.specialized.2(i32 2)
; CHECK-NEXT: call void @g.recurse.clone{{[.0-9]*}}(i32 1)
; CHECK: define internal void @g.specialized.2(
; CHECK-NEXT: call void @used_by_g(i32 2)
; CHECK-NEXT: call void @g.specialized.1(i32 1)
; CHECK-NEXT: call void @f.recurse.clone{{[.0-9]*}}(i32 0)
