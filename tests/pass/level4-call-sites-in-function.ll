; Level 4 takes as many call sites in one caller as the limit says, also when the module could take more.
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -inline-recursion-max-callsite-fun=2 -S %s | FileCheck %s --check-prefix=CHAINED
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-fun=2 -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -inline-recursion-max-callsite-fun=0 -S %s | FileCheck %s --implicit-check-not=recurse.clone

; CHECK: define i32 @f(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK:      define i32 @caller(
; CHECK-NEXT:   call i32 @f(i32 %n)
; CHECK-NEXT:   call i32 @f(i32 %a)
; CHAINED:      call i32 @f.recurse.clone(i32 %n)
; CHAINED-NEXT: call i32 @f.recurse.clone(i32 %a)
define i32 @caller(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  ret i32 %b
}
