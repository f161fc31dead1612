; States that lead to each other in a circle are copies that call each other.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s

; CHECK-LABEL: define void @enter(
; CHECK-NEXT: call void @[[ON:walk.specialized[^(]*]](i1 true, ptr %node)
; CHECK: define internal void @[[ON]](
; CHECK-NOT: volatile i32 2
; CHECK: store volatile i32 1
; CHECK: call void @[[OFF:walk.specialized[^(]*]](i1 false, ptr %first)
; CHECK: call void @[[OFF]](i1 false, ptr %second)
; CHECK: define internal void @[[OFF]](
; CHECK-NOT: volatile i32 1
; CHECK: store volatile i32 2
; CHECK: call void @[[ON]](i1 true, ptr %first)
; CHECK: call void @[[ON]](i1 true, ptr %second)

@g = external global i32

define void @walk(i1 %flag, ptr %node) {
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
  call void @walk(i1 %not, ptr %first)
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @walk(i1 %not, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @walk(i1 true, ptr %node)
  ret void
}
