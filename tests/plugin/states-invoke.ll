; Calls that may throw lead to copies like others, from outside as well.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s

; CHECK-LABEL: define void @enter(
; CHECK: invoke void @[[ON:walk.specialized[^(]*]](i1 true, ptr %node)
; CHECK-NEXT: to label %back unwind label %pad
; CHECK: define internal void @[[ON]](
; CHECK: invoke void @[[OFF:walk.specialized[^(]*]](i1 false, ptr %first)
; CHECK: call void @[[OFF]](i1 false, ptr %second)

@g = external global i32

declare i32 @__gxx_personality_v0(...)

define void @walk(i1 %flag, ptr %node) personality ptr @__gxx_personality_v0 {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  %kind = select i1 %flag, i32 7, i32 9
  %value = zext i1 %flag to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  invoke void @walk(i1 %not, ptr %first) to label %back unwind label %pad
back:
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @walk(i1 %not, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  store volatile i32 5, ptr @g
  resume { ptr, i32 } %l
}

define void @enter(ptr %node) personality ptr @__gxx_personality_v0 {
  invoke void @walk(i1 true, ptr %node) to label %back unwind label %pad
back:
  ret void
pad:
  %l = landingpad { ptr, i32 } catch ptr null
  ret void
}
