; A depth of ten for one function does not reach the next one, in the same process and at a level that sets none.
; RUN: %opt -passes='inlinerecursion<level=4>,inlinerecursion<level=3>' -S %s | FileCheck %s

; Level 4 refuses f for its call sites and chains g; level 3 then chains f.
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
define i32 @g(i32 %n) {
  %r = call i32 @g(i32 %n)
  ret i32 %r
}
define i32 @caller(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  ret i32 %b
}

; CHECK-COUNT-10: define internal i32 @g.recurse.clone
; CHECK:          define internal i32 @f.recurse.clone(
; CHECK-NOT:      define internal
