; With no room for states, none are built, and nothing is said of them.
; RUN: %opt -passes='inlinerecursion-pipeline<state-growth=0>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not=specialized --implicit-check-not=' states of'
; RUN: %opt -passes='inlinerecursion-pipeline' -inlinerecursion-auto-state-growth=0 -S %s 2>&1 | FileCheck %s --check-prefix=BUILT --implicit-check-not=specialized
; RUN: %opt -passes='inlinerecursion-pipeline<state-growth=1000>' -inlinerecursion-auto-state-growth=0 -S %s 2>&1 | FileCheck %s --check-prefix=ON

; CHECK-DAG: 'walk' rebuilt as a ring
; BUILT: define void @enter
; ON: call void @walk.specialized

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
