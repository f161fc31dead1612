; A function with the mark of a copy is left alone, whatever the value of the mark.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='define internal'

; CHECK:      define i32 @f(i32 %n)
; CHECK-NEXT:   call i32 @f(i32 %n)
define i32 @f(i32 %n) "llvm.recurse.clone" {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; CHECK:      define i32 @g(i32 %n)
; CHECK-NEXT:   call i32 @g(i32 %n)
define i32 @g(i32 %n) "llvm.recurse.clone"="false" {
  %r = call i32 @g(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @taken(
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone(
