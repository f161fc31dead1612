; A call that also passes the function counts as two call sites, in its caller and in the module.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-fun=2 -S %s | FileCheck %s --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -inline-recursion-max-callsite-fun=2 -S %s | FileCheck %s --check-prefix=CHAINED

; CHECK: define i32 @f(
define i32 @f(ptr %p) {
  %r = call i32 @f(ptr %p)
  ret i32 %r
}

; CHECK:   call i32 @f(ptr @f)
; CHAINED: call i32 @f.recurse.clone(ptr @f)
define i32 @caller() {
  %r = call i32 @f(ptr @f)
  ret i32 %r
}
