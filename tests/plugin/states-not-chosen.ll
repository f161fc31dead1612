; Where constants enter a function and a ring is built of it, an analysis remark says why
; there are no copies for states.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-analysis=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --implicit-check-not='no copies for constants'

; CHECK-DAG: 'sum' rebuilt as a ring
; CHECK-DAG: 'sum' has no copies for constants: what becomes a loop would be calls between its states
; CHECK-DAG: 'walk' rebuilt for 2 states
; CHECK-DAG: 'unknown' rebuilt as a ring

@g = external global i32

; The second call becomes a loop.
define i32 @sum(i1 %flag, ptr %node) {
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
  %mine = mul i32 %value, %kind
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  %q = call i32 @sum(i1 %not, ptr %first)
  store volatile i32 %q, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  %r = call i32 @sum(i1 %not, ptr %second)
  %s = add i32 %r, %mine
  ret i32 %s
exit:
  ret i32 0
}

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
  br label %exit
exit:
  ret void
}

; Called with nothing that is known.
define void @unknown(i1 %flag, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @unknown(i1 %not, ptr %first)
  store volatile i32 3, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @unknown(i1 %not, ptr %second)
  store volatile i32 4, ptr @g
  br label %exit
exit:
  ret void
}

define i32 @enter(i1 %flag, ptr %node) {
  call void @walk(i1 true, ptr %node)
  call void @unknown(i1 %flag, ptr %node)
  %r = call i32 @sum(i1 true, ptr %node)
  ret i32 %r
}
