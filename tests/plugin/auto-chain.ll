; Where constants enter a recursion of several arguments and self calls, from
; several places, the policy builds a chain as deep as the deepest of them; behind
; the inliner no recursion is left.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes='default<O3>' -S %s | FileCheck %s --check-prefix=GONE --implicit-check-not='call void @move'

; TOLD: 'move' rebuilt as a chain of 3 copies by the automatic policy, entered with constants, growing by about 56 instructions

@g = external global i32

; CHECK: define internal void @move(i32 %n, i32 %a, i32 %b)
; CHECK: call void @move(
; CHECK: call void @move(
define internal void @move(i32 %n, i32 %a, i32 %b) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
  call void @move(i32 %m, i32 %b, i32 %a)
  store i32 %a, ptr @g
  call void @move(i32 %m, i32 %a, i32 %b)
  br label %exit
exit:
  ret void
}

; CHECK-LABEL: define void @both(
; CHECK: call void @[[FIRST:move.recurse.clone[.0-9]*]](i32 2, i32 %x, i32 1)
; CHECK: call void @[[FIRST]](i32 1, i32 %x, i32 %x)
; GONE-LABEL: define void @both(
; GONE: ret void
define void @both(i32 %x) {
  call void @move(i32 2, i32 %x, i32 1)
  call void @move(i32 1, i32 %x, i32 %x)
  ret void
}

; CHECK: define internal void @[[FIRST]]({{.*}}) #[[INLINED:[0-9]+]]
; CHECK: call void @[[SECOND:move.recurse.clone[.0-9]*]](
; CHECK: call void @[[SECOND]](
; CHECK: define internal void @[[SECOND]]({{.*}}) #[[INLINED]]
; CHECK: call void @[[LAST:move.recurse.clone[.0-9]*]](
; CHECK: call void @[[LAST]](
; CHECK: define internal void @[[LAST]]({{.*}}) #[[INLINED]]
; CHECK: call void @move(
; CHECK: call void @move(
; CHECK: attributes #[[INLINED]] = { alwaysinline
