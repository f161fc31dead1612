; A call that may throw passes values and goes on where it did.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK-LABEL: define internal i32 @f(i32 %p)
; CHECK: %r = invoke i32 @f(i32 %m)
; CHECK-NEXT: to label %back unwind label %pad

declare i32 @__gxx_personality_v0(...)
define internal i32 @f(ptr %p) personality ptr @__gxx_personality_v0 {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %r = invoke i32 @f(ptr %next) to label %back unwind label %pad
back:
  %s = mul i32 %r, %n
  ret i32 %s
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
end:
  ret i32 1
}

define i32 @local() {
  %start = alloca i32
  store i32 3, ptr %start
  %r = call i32 @f(ptr %start)
  ret i32 %r
}
