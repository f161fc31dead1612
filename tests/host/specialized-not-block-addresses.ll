; A ring whose blocks have their addresses taken, or that must not be duplicated further, is not specialised.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='.specialized.'

declare void @once() noduplicate

define internal i32 @labels(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %even = icmp eq i32 %r, 2
  %target = select i1 %even, ptr blockaddress(@labels, %a), ptr blockaddress(@labels, %b)
  indirectbr ptr %target, [label %a, label %b]
a:
  ret i32 1
b:
  %x = call i32 @labels(i32 %r)
  ret i32 %x
}

define internal i32 @barrier(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @once()
  %x = call i32 @barrier(i32 %r)
  ret i32 %x
}

; CHECK-LABEL: define void @caller(
; CHECK: call i32 @labels.recurse.clone(i32 3)
; CHECK: call i32 @barrier.recurse.clone(i32 3)
define void @caller() {
  %a = call i32 @labels(i32 3)
  %b = call i32 @barrier(i32 3)
  ret void
}
