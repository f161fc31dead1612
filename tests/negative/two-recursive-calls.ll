; A function that calls itself twice is left alone at every level; inlining it would grow exponentially.
; RUN: %opt -passes='inlinerecursion<level=1>' -S %s | FileCheck %s --implicit-check-not=f.recurse.clone
; RUN: %opt -passes='inlinerecursion<level=2>' -S %s | FileCheck %s --implicit-check-not=f.recurse.clone
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=f.recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-fun=9 -inline-recursion-max-callsite-mod=9 -S %s | FileCheck %s --implicit-check-not=f.recurse.clone
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=7 -S %s | FileCheck %s --implicit-check-not=f.recurse.clone

; CHECK: define i32 @f(i32 %n) {
; CHECK: define i32 @caller(
; CHECK:   call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  ret i32 %b
}
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
