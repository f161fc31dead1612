; A module of declarations stays as it is, calls of a declaration too.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define --implicit-check-not=attributes
; RUN: %legacy_opt -inlinerecursion -inline-recursion-opt-level=3 -S %s | FileCheck %s --implicit-check-not=define --implicit-check-not=attributes
; RUN: sed 's/^declare i32 @f(i32)$/define i32 @f(i32 %%n) { %%r = call i32 @f(i32 %%n) ret i32 %%r }/' %s | %opt -passes='inlinerecursion<level=3>' -S | FileCheck %s --check-prefix=BODY

; BODY: define internal i32 @f.recurse.clone(
; CHECK: declare i32 @f(i32)
declare i32 @f(i32)
; CHECK: declare void @g()
declare void @g()
