; A function without a name is chained like any other.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define

; CHECK:      define i32 @0(i32 %n)
; CHECK-NEXT:   call i32 @0(i32 %n)
define i32 @0(i32 %n) {
  %r = call i32 @0(i32 %n)
  ret i32 %r
}

; CHECK:      define i32 @caller(
; CHECK-NEXT:   call i32 @.recurse.clone(i32 %n)
define i32 @caller(i32 %n) {
  %r = call i32 @0(i32 %n)
  ret i32 %r
}

; CHECK:      define internal i32 @.recurse.clone(i32 %n)
; CHECK-NEXT:   call i32 @0(i32 %n)
