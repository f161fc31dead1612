; An invoke from outside keeps calling the function, next to a call that is redirected.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}' --implicit-check-not='invoke{{ }}'

declare i32 @__gxx_personality_v0(...)

; CHECK-LABEL: define i32 @f(
; CHECK:         call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK:         %a = invoke i32 @f(i32 %n)
; CHECK:         %b = call i32 @f.recurse.clone(i32 %a)
define i32 @caller(i32 %n) personality ptr @__gxx_personality_v0 {
  %a = invoke i32 @f(i32 %n) to label %ok unwind label %bad
ok:
  %b = call i32 @f(i32 %a)
  ret i32 %b
bad:
  %e = landingpad { ptr, i32 } catch ptr null
  ret i32 0
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK:         call i32 @f(i32 %n)
