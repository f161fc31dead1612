; A plan for a function with large variables in memory may name states, and nothing that is
; inlined into each other.
; RUN: rm -rf %t && split-file %s %t
; RUN: %opt -passes='inlinerecursion-pipeline' -inlinerecursion-plan=%t/states.plan -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %t/walk.ll 2>&1 | FileCheck %s --check-prefix=STATES --implicit-check-not=warning:
; RUN: %opt -passes='inlinerecursion-pipeline' -inlinerecursion-plan=%t/ring.plan -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %t/walk.ll 2>&1 | FileCheck %s --check-prefix=RING

; STATES: 'walk' rebuilt for 2 states of 'flag' (true, false) by the automatic policy, {{.*}}, as planned
; RING: warning: {{.*}}the plan 'ring copies=3' {{.*}} that 'walk' asks for is not built: its local variables take more stack than inlinerecursion-max-frame-size allows
; RING: 'walk' rebuilt for 2 states

;--- states.plan
---
version: 1
module: walk.ll
functions:
  - name: walk
    plan: states arguments=1
...
;--- ring.plan
---
version: 1
module: walk.ll
functions:
  - name: walk
    plan: ring copies=3
...
;--- walk.ll
source_filename = "walk.ll"
@g = external global i32
declare void @use(ptr)

define void @walk(i1 %flag, ptr %node) {
entry:
  %x = alloca [300 x i8]
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
  call void @use(ptr %x)
  %kind = select i1 %flag, i32 7, i32 9
  %value = zext i1 %flag to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @walk(i1 %not, ptr %first)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @walk(i1 true, ptr %node)
  ret void
}
