; Small copies are inlined where they are called, and each circle keeps one that is not.
; How small, says an option.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s
; RUN: %opt -passes='inlinerecursion-pipeline' -inlinerecursion-state-inline-size=0 -S %s | FileCheck %s --check-prefix=NONE

; CHECK: define internal void @walk.specialized{{[^(]*}}({{.*}}) [[FIRST:#[0-9]+]] {
; CHECK: define internal void @walk.specialized{{[^(]*}}({{.*}}) [[SECOND:#[0-9]+]] {
; CHECK-DAG: attributes [[FIRST]] = { noinline {{.*}}"inlinerecursion-state"
; CHECK-DAG: attributes [[SECOND]] = { alwaysinline {{.*}}"inlinerecursion-state"
; NONE: define internal void @walk.specialized{{[^(]*}}({{.*}}) [[FIRST:#[0-9]+]] {
; NONE: define internal void @walk.specialized{{[^(]*}}({{.*}}) [[FIRST]] {
; NONE: attributes [[FIRST]] = { noinline {{.*}}"inlinerecursion-state"

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
