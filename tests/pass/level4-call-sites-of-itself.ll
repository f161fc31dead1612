; The recursive call is a call site in the function itself, so a limit of none refuses everything.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --check-prefix=CHAINED
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-fun=0 -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=1 -S %s | FileCheck %s --check-prefix=CHAINED
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=0 -S %s | FileCheck %s --implicit-check-not=recurse.clone

; CHECK: define i32 @f(
; CHAINED: define internal i32 @f.recurse.clone(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
