; Calling oneself through a pointer, an alias or another function type is no recursion to the pass.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='define internal'

; CHECK: @address = global ptr @pointer
@address = global ptr @pointer
@alias = alias i32 (i32), ptr @aliased

; CHECK: define i32 @pointer(i32 %n) {
define i32 @pointer(i32 %n) {
  %p = load ptr, ptr @address
  %r = call i32 %p(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @aliased(i32 %n) {
; CHECK:   call i32 @alias(i32 %n)
define i32 @aliased(i32 %n) {
  %r = call i32 @alias(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @othertype(i32 %n) {
; CHECK:   call i32 @othertype(i64 1)
define i32 @othertype(i32 %n) {
  %r = call i32 @othertype(i64 1)
  ret i32 %r
}
; CHECK: define i32 @passed(ptr %p) {
; CHECK:   call i32 %p(ptr @passed)
define i32 @passed(ptr %p) {
  %r = call i32 %p(ptr @passed)
  ret i32 %r
}
; CHECK: define i32 @taken(
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone(
