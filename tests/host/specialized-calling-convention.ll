; Copies with one body but several calling conventions do not stand for each other: a call and what it calls agree.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='call fastcc void @a.specialized'

; Any function that is accepted makes the pass look for rings.
define void @h(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 2
  call void @h(i32 %r)
  ret void
}

; A ring of an earlier run, whose conventions were changed since.
define internal void @a.recurse.clone(i32 %n) "llvm.recurse.clone" "specialize-inline-recursion-function-eligible" {
  %m = sub i32 %n, 1
  call void @a.recurse.clone(i32 %m)
  call fastcc void @a.recurse.clone.1(i32 %m)
  ret void
}

define internal fastcc void @a.recurse.clone.1(i32 %n) "llvm.recurse.clone" "specialize-inline-recursion-function-eligible" {
  %m = sub i32 %n, 1
  call void @a.recurse.clone(i32 %m)
  call fastcc void @a.recurse.clone.1(i32 %m)
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK: call void @a.specialized.1(i32 1)
define void @caller() {
  call void @a.recurse.clone(i32 1)
  ret void
}
