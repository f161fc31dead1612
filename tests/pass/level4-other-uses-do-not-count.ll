; Invokes, addresses and calls through another type are no call sites to the limits of level 4.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s

declare i32 @__gxx_personality_v0(...)
declare void @take(ptr)

; CHECK: define i32 @f(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK: define i32 @caller(
; CHECK:   %direct = call i32 @f.recurse.clone(i32 %n)
define i32 @caller(i32 %n) personality ptr @__gxx_personality_v0 {
  call void @take(ptr @f)
  %type = call i64 @f(i64 1)
  %i = invoke i32 @f(i32 %n) to label %ok unwind label %bad
ok:
  %direct = call i32 @f(i32 %n)
  ret i32 %direct
bad:
  %e = landingpad { ptr, i32 } catch ptr null
  ret i32 0
}
