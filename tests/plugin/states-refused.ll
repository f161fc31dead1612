; Why there are no copies for states, if constants enter a function of which nothing else
; is built either.
; RUN: %opt -passes='inlinerecursion-auto<copies=0;state-growth=60>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s

; CHECK-DAG: 'little' not chained: {{.*}}; for constants, known arguments would save {{[0-9]}} % of the time, less than 10
; CHECK-DAG: 'growing' not chained: {{.*}}; for constants, no finite states: 'number' takes more than 128 values
; CHECK-DAG: 'large' not chained: {{.*}}; for constants, copies for 2 states would add {{[0-9]+}} instructions, more than 60
; CHECK-DAG: 'walk' rebuilt for 2 states

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

define void @little(i1 %flag, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  %bits = ptrtoint ptr %node to i64
  %odd = trunc i64 %bits to i1
  br i1 %odd, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  store volatile i32 0, ptr @g
  store volatile i32 1, ptr @g
  store volatile i32 2, ptr @g
  store volatile i32 3, ptr @g
  store volatile i32 4, ptr @g
  store volatile i32 5, ptr @g
  store volatile i32 6, ptr @g
  store volatile i32 7, ptr @g
  %kind = select i1 %odd, i32 7, i32 9
  %value = zext i1 %odd to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @little(i1 %not, ptr %first)
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @little(i1 %not, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @growing(i64 %number, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  store volatile i64 %number, ptr @g
  %even = shl i64 %number, 1
  %odd = or i64 %even, 1
  %first = load ptr, ptr %node
  call void @growing(i64 %even, ptr %first)
  store volatile i64 %number, ptr @g
  call void @growing(i64 %odd, ptr %first)
  store volatile i64 %number, ptr @g
  br label %exit
exit:
  ret void
}

define void @large(i1 %flag, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 0, ptr @g
  store volatile i32 1, ptr @g
  store volatile i32 2, ptr @g
  store volatile i32 3, ptr @g
  store volatile i32 4, ptr @g
  store volatile i32 5, ptr @g
  store volatile i32 6, ptr @g
  store volatile i32 7, ptr @g
  store volatile i32 8, ptr @g
  store volatile i32 9, ptr @g
  store volatile i32 10, ptr @g
  store volatile i32 11, ptr @g
  store volatile i32 12, ptr @g
  store volatile i32 13, ptr @g
  store volatile i32 14, ptr @g
  store volatile i32 15, ptr @g
  store volatile i32 16, ptr @g
  store volatile i32 17, ptr @g
  store volatile i32 18, ptr @g
  store volatile i32 19, ptr @g
  store volatile i32 20, ptr @g
  store volatile i32 21, ptr @g
  store volatile i32 22, ptr @g
  store volatile i32 23, ptr @g
  store volatile i32 24, ptr @g
  store volatile i32 25, ptr @g
  store volatile i32 26, ptr @g
  store volatile i32 27, ptr @g
  store volatile i32 28, ptr @g
  store volatile i32 29, ptr @g
  store volatile i32 30, ptr @g
  store volatile i32 31, ptr @g
  store volatile i32 32, ptr @g
  store volatile i32 33, ptr @g
  store volatile i32 34, ptr @g
  store volatile i32 35, ptr @g
  store volatile i32 36, ptr @g
  store volatile i32 37, ptr @g
  store volatile i32 38, ptr @g
  store volatile i32 39, ptr @g
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
  call void @large(i1 %not, ptr %first)
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @large(i1 %not, ptr %second)
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
  call void @little(i1 true, ptr %node)
  ret void
}
define void @enter3(ptr %node) {
  call void @growing(i64 1, ptr %node)
  ret void
}
define void @enter5(ptr %node) {
  call void @large(i1 true, ptr %node)
  ret void
}
