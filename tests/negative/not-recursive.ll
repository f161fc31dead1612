; A function that does not call itself is left alone.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='define internal'

; CHECK: define i32 @f(i32 %n) {
define i32 @f(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @taken(
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @caller(i32 %n) {
; CHECK:   call i32 @f(i32 %n)
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone(
