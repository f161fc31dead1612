; Where most steps lead up, the ring is closed without a question, and what calls several copies that are not inlined may enter each; remainders by what divides are constants as well.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -inlinerecursion-ring-size-calls=0 -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining,verify -disable-output %s
; RUN: %opt -passes='inlinerecursion,function(require<domtree>),inlinerecursion-ring-inlining' -debug-pass-manager -disable-output %s 2>&1 | FileCheck %s --check-prefix=CHANGED

; CHANGED: Running pass: InlineRecursionRingInliningPass
; CHANGED: Invalidating analysis: InnerAnalysisManagerProxy<FunctionAnalysisManager, Module>

declare void @use(i32, i32, i32)

define internal void @f(i32 %n) "specialize-inline-recursion-function"="found" {
  %small = srem i32 %n, 2
  %r = srem i32 %n, 4
  %other = urem i32 %n, 3
  call void @use(i32 %r, i32 %small, i32 %other)
  %done = icmp sgt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %a = add nsw i32 %n, 1
  call void @f(i32 %a)
  %b = add nsw i32 %n, 1
  call void @f(i32 %b)
  call void @f(i32 %n)
  call void @f(i32 %n)
  %c = add nsw i32 %n, -1
  call void @f(i32 %c)
  br label %end
end:
  ret void
}

define void @caller(i32 %n) {
  call void @f(i32 %n)
  ret void
}

; The first remainder, by 2, is all that the ring is as long as.
; CHECK-LABEL: define internal void @f.recurse.clone(i32 %n)
; CHECK-NEXT: %r = srem i32 %n, 4
; CHECK-NEXT: %other = urem i32 %n, 3
; CHECK-NEXT: call void @use(i32 %r, i32 0, i32 %other)
; CHECK: call void @[[ONE:f.recurse.clone.[0-9]+]](i32 %a)
; CHECK: call void @[[ONE]](i32 %b)
; CHECK: call void @f.recurse.clone(i32 %n)
; CHECK: call void @f.recurse.clone(i32 %n)
; CHECK: call void @f.recurse.entry(i32 %c)
; CHECK: define internal void @[[ONE]](i32 %n)
; CHECK: call void @use(i32 %r, i32 1, i32 %other)
; CHECK: call void @f.recurse.clone(i32 %a)
; CHECK: call void @f.recurse.clone(i32 %b)
; CHECK: call void @[[ONE]](i32 %n)
; CHECK: call void @f.recurse.clone(i32 %c)

; An argument that may be undefined must not decide which way to go.
; CHECK-LABEL: define internal void @f.recurse.entry(i32 %0)
; CHECK-NEXT: %[[N:.*]] = freeze i32 %0
; CHECK-NEXT: icmp sge i32 %[[N]], 0
; CHECK: urem i32 %[[N]], 2
; CHECK-NEXT: switch
; CHECK-NEXT: i32 0, label %[[CASE0:.*]]
; CHECK-NEXT: i32 1, label %[[CASE1:.*]]
; CHECK: [[CASE0]]:
; CHECK-NEXT: call void @f.recurse.clone(i32 %0)
; CHECK: [[CASE1]]:
; CHECK-NEXT: call void @[[ONE]](i32 %0)
