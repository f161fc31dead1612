; A recursion that counts to a constant enters a chain for its last levels, in
; which the counter is known and the last copy calls nothing.
; RUN: %opt -passes='inlinerecursion-pipeline<function-growth=230>' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes='default<O3>' -S %s | FileCheck %s --check-prefix=GONE

; TOLD: 'move' rebuilt as a leaf chain of 5 copies by the automatic policy, entered where 4 levels are left, growing by about 184 instructions

@g = external global i32

; A local variable stays where it is made once, however the body loops.
; CHECK-LABEL: define void @move(i32 %n, i32 %a, i32 %b)
; CHECK-NEXT: entry:
; CHECK-NEXT: %local = alloca i32
; CHECK-NEXT: switch i32 %n, label %[[BODY:[.0-9a-z]+]] [
; CHECK-NEXT: i32 4, label %[[FOUR:[.0-9a-z]+]]
; CHECK-NEXT: i32 2, label %[[TWO:[.0-9a-z]+]]
; CHECK-NEXT: ]
; CHECK: [[BODY]]:
; CHECK-NEXT: %none = icmp eq i32 %n, 0
; CHECK: call void @move(i32 %m, i32 %b, i32 %a)
; CHECK: call void @move(i32 %m, i32 %a, i32 %b)
; CHECK: [[FOUR]]:
; CHECK-NEXT: call void @move.recurse.clone(i32 %n, i32 %a, i32 %b)
; CHECK-NEXT: ret void
; CHECK: [[TWO]]:
; CHECK-NEXT: call void @[[LEAVES2:move.recurse.clone[.0-9]+]](i32 %n, i32 %a, i32 %b)
; CHECK-NEXT: ret void

; Nothing but the merged leaves and the levels above them is left.
; GONE: define internal {{.*}}void @move.recurse.clone(
; GONE-NOT: call void @move
; GONE-COUNT-127: store volatile
; GONE-NOT: store volatile
define void @move(i32 %n, i32 %a, i32 %b) {
entry:
  %local = alloca i32
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  store i32 %b, ptr %local
  %m = sub i32 %n, 1
  call void @move(i32 %m, i32 %b, i32 %a)
  %c = load i32, ptr %local
  store volatile i32 %c, ptr @g
  call void @move(i32 %m, i32 %a, i32 %b)
  br label %exit
exit:
  ret void
}

; Who calls from outside calls the function.
; CHECK-LABEL: define void @enter(
; CHECK-NEXT: call void @move(i32 %x, i32 1, i32 2)
define void @enter(i32 %x) {
  call void @move(i32 %x, i32 1, i32 2)
  ret void
}

; CHECK-LABEL: define internal void @move.recurse.clone(i32 %n, i32 %a, i32 %b)
; CHECK-SAME: #[[KEPT:[0-9]+]]
; CHECK: %m = sub i32 4, 1
; CHECK: call void @[[NEXT:move.recurse.clone[.0-9]+]](i32 %m, i32 %b, i32 %a)
; CHECK: call void @[[NEXT]](i32 %m, i32 %a, i32 %b)
; CHECK: define internal void @[[NEXT]](
; CHECK-SAME: #[[INLINED:[0-9]+]]
; CHECK: define internal void @[[LEAVES2]](
; CHECK-SAME: #[[INLINED]]
; CHECK: %m = sub i32 2, 1
; CHECK: call void @[[LEAVES1:move.recurse.clone[.0-9]+]](
; CHECK: define internal void @[[LEAVES1]](
; CHECK: call void @[[LEAVES0:move.recurse.clone[.0-9]+]](
; CHECK: define internal void @[[LEAVES0]](
; CHECK-NOT: call
; CHECK: ret void
; CHECK: attributes #[[KEPT]] = { noinline
; CHECK: attributes #[[INLINED]] = { alwaysinline
