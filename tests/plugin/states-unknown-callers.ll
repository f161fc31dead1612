; A function that others may call, or that is called with something unknown, stays as
; it is for those, under its name.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s

; CHECK: @table = constant ptr @walk
; CHECK-LABEL: define void @walk(i1 %flag, ptr %node)
; CHECK: br i1 %flag, label %left, label %right
; CHECK: call void @walk(i1 %not, ptr %first)
; CHECK: call void @walk(i1 %not, ptr %second)
; CHECK-LABEL: define void @enter(
; CHECK: call void @walk.specialized
; CHECK-LABEL: define void @unknown(
; CHECK: call void @walk(i1 %flag, ptr %node)

@g = external global i32

@table = constant ptr @walk

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

define void @unknown(i1 %flag, ptr %node) {
  call void @walk(i1 %flag, ptr %node)
  ret void
}
