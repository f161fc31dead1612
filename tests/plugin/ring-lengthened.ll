; Where the source asks for a ring, it gets a copy for each value of its largest remainder that is stepped by constants, whichever the pass has granted it for, also if only other files call it.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining,verify -disable-output %s
; As long as it is not too large.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -inlinerecursion-max-ring-size=20 -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=SHORT

; TOLD: 'f' rebuilt as a ring of 7 copies, as requested, one for each remainder
; SHORT: 'f' rebuilt as a ring of 2 copies, as requested, one for each remainder

declare void @use(i32, i32, i32)

define void @f(i32 %n, i32 %k) "specialize-inline-recursion-function" {
  %small = srem i32 %n, 2
  %other = srem i32 %k, 5
  %r = srem i32 %n, 7
  %large = urem i32 %n, 65
  call void @use(i32 %r, i32 %small, i32 %other)
  %a = add nsw i32 %n, 1
  %half = lshr i32 %k, 1
  call void @f(i32 %a, i32 %half)
  ret void
}

; CHECK-LABEL: define void @f(
; CHECK: call void @f.recurse.entry(i32 %a, i32 %half)
; CHECK-LABEL: define internal void @f.recurse.clone(
; CHECK: call void @use(i32 0, i32 %small, i32 %other)
; CHECK-COUNT-5: define internal void @f.recurse.clone.
; CHECK: define internal void @f.recurse.clone.
; CHECK: call void @use(i32 6, i32 %small, i32 %other)
; CHECK: call void @f.recurse.clone(i32 %a, i32 %half)
