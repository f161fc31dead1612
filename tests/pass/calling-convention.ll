; Calls of the copies use the calling convention that the copies inherit.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s

; CHECK-LABEL: define fastcc i32 @f(
define fastcc i32 @f(i32 %n) {
  %r = call fastcc i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK-NEXT:    %r = call fastcc i32 @f.recurse.clone(i32 %n)
define i32 @caller(i32 %n) {
  %r = call fastcc i32 @f(i32 %n)
  ret i32 %r
}
; CHECK-LABEL: define internal fastcc i32 @f.recurse.clone(
; CHECK-NEXT:    %r = call fastcc i32 @f.recurse.clone.[[#]](i32 %n)
