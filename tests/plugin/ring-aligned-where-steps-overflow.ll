; Where a step up may overflow, the copy of the last remainder below the largest number tests that, and goes on in the function itself; the others step without a question.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -inlinerecursion-ring-size-calls=0 -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining,verify -disable-output %s

declare void @use(i32)

; The largest number, 2147483647, leaves 1.
define internal void @f(i32 %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 3
  call void @use(i32 %r)
  %a = add i32 %n, 1
  call void @f(i32 %a)
  %b = sub i32 %n, -2
  call void @f(i32 %b)
  %c = add nsw i32 %n, 4
  call void @f(i32 %c)
  ret void
}

define void @caller(i32 %n) {
  call void @f(i32 %n)
  ret void
}

; CHECK-LABEL: define internal void @f.recurse.clone(i32 %n)
; CHECK-NEXT: call void @use(i32 0)
; CHECK: call void @[[ONE:f.recurse.clone.[0-9]+]](i32 %a)
; CHECK: call void @[[TO_TWO:f.recurse.step[0-9.]*]](i32 %b)
; CHECK: call void @[[ONE]](i32 %c)
; CHECK: define internal void @[[ONE]](i32 %n)
; CHECK-NEXT: call void @use(i32 1)
; CHECK: call void @[[TO_TWO]](i32 %a)
; CHECK: call void @[[TO_ZERO:f.recurse.step[0-9.]*]](i32 %b)
; CHECK: call void @[[TWO:f.recurse.clone.[0-9]+]](i32 %c)
; CHECK: define internal void @[[TWO]](i32 %n)
; CHECK-NEXT: call void @use(i32 2)
; CHECK: call void @f.recurse.clone(i32 %a)
; CHECK: call void @[[ONE]](i32 %b)
; CHECK: call void @f.recurse.clone(i32 %c)

; CHECK: define internal void @[[TO_TWO]](i32 %0) #[[INLINED:[0-9]+]]
; CHECK-NEXT: %[[N:.*]] = freeze i32 %0
; CHECK-NEXT: %[[NEGATIVE:.*]] = icmp slt i32 %[[N]], 0
; CHECK-NEXT: br i1 %[[NEGATIVE]], label %[[OUT:.*]], label %[[ON:.*]]
; CHECK: [[OUT]]:
; CHECK-NEXT: call void @f(i32 %0)
; CHECK: [[ON]]:
; CHECK-NEXT: call void @[[TWO]](i32 %0)
; CHECK: define internal void @[[TO_ZERO]](i32 %0) #[[INLINED]]
; CHECK: attributes #[[INLINED]] = { {{.*}}alwaysinline
