; What is known, its values, and what that saves.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s

; CHECK-DAG: 'walk' rebuilt for 2 states of 'flag' (true, false) by the automatic policy, {{[0-9]+}} % of {{[0-9]+}} instructions folded, growing by about {{[0-9]+}} instructions
; CHECK-DAG: 'unnamed' rebuilt for 2 states of argument 1 (true, false) by

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

define void @unnamed(i1 %0, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %0, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  %kind = select i1 %0, i32 7, i32 9
  %value = zext i1 %0 to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %0, true
  %first = load ptr, ptr %node
  call void @unnamed(i1 %not, ptr %first)
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @unnamed(i1 %not, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @walk(i1 true, ptr %node)
  ret void
}
define void @enter2(ptr %node) {
  call void @unnamed(i1 true, ptr %node)
  ret void
}
