; A function that is known not to call itself, whatever its code says, is left alone.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='define internal'

; CHECK:      define i32 @f(i32 %n) #[[F:[0-9]+]]
; CHECK-NEXT:   call i32 @f(i32 %n)
define i32 @f(i32 %n) norecurse {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @taken(
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone(
; CHECK: attributes #[[F]] = { norecurse }
