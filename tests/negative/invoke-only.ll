; A function that calls itself by invoke only is not recursive to the pass.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='define internal'

declare i32 @__gxx_personality_v0(...)

; CHECK: define i32 @f(i32 %n) personality ptr @__gxx_personality_v0 {
; CHECK:   invoke i32 @f(i32 %n)
define i32 @f(i32 %n) personality ptr @__gxx_personality_v0 {
  %a = invoke i32 @f(i32 %n) to label %ok unwind label %bad
ok:
  ret i32 %a
bad:
  %e = landingpad { ptr, i32 } catch ptr null
  ret i32 0
}
; CHECK: define i32 @taken(
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @taken.recurse.clone(
