; Without a local recursive function that has a pointer argument nothing is
; promoted: @plain would be.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: define internal i32 @plain(ptr %p)
define internal i32 @plain(ptr %p) {
  %n = load i32, ptr %p
  ret i32 %n
}

define i32 @enter(ptr %p) {
  %r = call i32 @plain(ptr %p)
  ret i32 %r
}
