; A copy has the function's other attributes, on itself, its arguments and its result.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s

; CHECK: define fastcc nonnull ptr @f(ptr nonnull %p, i32 signext %n) unnamed_addr #[[F:[0-9]+]] section ".mine" align 64 gc "statepoint-example" {
; CHECK: define internal fastcc nonnull ptr @f.recurse.clone(ptr nonnull %p, i32 signext %n) unnamed_addr #[[F]] section ".mine" align 64 gc "statepoint-example" {
define fastcc nonnull ptr @f(ptr nonnull %p, i32 signext %n) unnamed_addr nounwind "mine"="yes" section ".mine" align 64 gc "statepoint-example" {
  %r = call fastcc ptr @f(ptr %p, i32 %n)
  ret ptr %r
}

; CHECK: attributes #[[F]] = { nounwind "llvm.recurse.clone" "mine"="yes" }
