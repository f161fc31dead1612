; A copy is not forced into a caller with other rules about library functions; into one with other rules about floating point the inliner itself does not put it.
; RUN: %opt -passes='inlinerecursion-pipeline<level=4>' -S %s | FileCheck %s
; RUN: %opt -passes='default<O2>' -inline-recursion-opt-level=4 -S %s | FileCheck %s --check-prefix=INLINED
target triple = "x86_64-unknown-linux-gnu"

declare void @work()

define void @strict(i32 %n) strictfp {
  call void @work() strictfp
  call void @strict(i32 %n) strictfp
  ret void
}
define void @freestanding(i32 %n) "no-builtin-memcpy" {
  call void @work()
  call void @freestanding(i32 %n)
  ret void
}
; INLINED-LABEL: define void @enter_strict(
; INLINED: call {{.*}}@strict.recurse.clone(
define void @enter_strict(i32 %n) {
  call void @strict(i32 %n)
  ret void
}
; CHECK-LABEL: define void @enter_freestanding(
; CHECK: call void @freestanding.recurse.clone(i32 %n) #[[NOINLINE:[0-9]+]]
; INLINED-LABEL: define void @enter_freestanding(
; INLINED: call {{.*}}@freestanding.recurse.clone(
define void @enter_freestanding(i32 %n) {
  call void @freestanding(i32 %n)
  ret void
}
; CHECK: attributes #[[NOINLINE]] = { noinline }
