; One call and one invoke of itself count as one recursive call; only the call becomes a link.
; RUN: %opt -passes='inlinerecursion<level=1>' -S %s | FileCheck %s --check-prefixes=CHECK,ONE --implicit-check-not='call{{ }}' --implicit-check-not='invoke{{ }}'
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --check-prefixes=CHECK,TEN

declare i32 @__gxx_personality_v0(...)

; CHECK-LABEL: define i32 @f(
; CHECK:         invoke i32 @f(i32 %n)
; CHECK:         call i32 @f(i32 %a)
define i32 @f(i32 %n) personality ptr @__gxx_personality_v0 {
  %a = invoke i32 @f(i32 %n) to label %ok unwind label %bad
ok:
  %b = call i32 @f(i32 %a)
  ret i32 %b
bad:
  %e = landingpad { ptr, i32 } catch ptr null
  ret i32 0
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK-SAME:    personality ptr @__gxx_personality_v0
; CHECK:         invoke i32 @f(i32 %n)
; ONE:           call i32 @f(i32 %a)
; TEN:           call i32 @f.recurse.clone.[[#]](i32 %a)
; TEN-COUNT-9:   invoke i32 @f(i32 %n)
; TEN:           call i32 @f(i32 %a)
; TEN-NOT:       call
