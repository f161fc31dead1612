; Where a ring counts down, each copy stands for one remainder, which it knows; surplus copies go, and who enters is asked for its remainder, as is the step past zero.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -S %s | FileCheck %s --implicit-check-not='define internal'
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining,verify -disable-output %s
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=REMARK
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -disable-output %s 2>&1 | count 0

; REMARK: 'f' rebuilt as a ring of 3 copies, as requested, one for each remainder

declare void @use(i32)

; What is not negative does not overflow on its way down.
; Where no copy is entered with that remainder, it is one step of the function itself.
; CHECK-LABEL: define void @f(i32 noundef %n)
; CHECK: call void @f.recurse.entry(i32 %m)
define void @f(i32 noundef %n) "specialize-inline-recursion-function" {
  %m = sub i32 %n, 1
  %q = srem i32 %m, 3
  %r = srem i32 %n, 3
  call void @use(i32 %r)
  %done = icmp eq i32 %n, 0
  br i1 %done, label %end, label %on
on:
  call void @f(i32 %m)
  call void @use(i32 %q)
  br label %end
end:
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK: call void @f.recurse.entry(i32 %n)
define void @caller(i32 %n) {
  call void @f(i32 %n)
  ret void
}

; The bound of a signed remainder by 3 is 4.
; CHECK-LABEL: define internal void @f.recurse.clone(i32 noundef %n)
; CHECK-SAME: [[OUT:#[0-9]+]] {
; CHECK-NEXT: %m = sub i32 %n, 1
; CHECK-NEXT: %q = srem i32 %m, 3
; CHECK-NEXT: call void @use(i32 2)
; CHECK: call void @[[ONE:f.recurse.clone.[0-9]+]](i32 %m)
; CHECK: define internal void @[[ONE]](i32 noundef %n)
; CHECK-SAME: [[IN:#[0-9]+]] {
; CHECK-NEXT: %m = sub i32 %n, 1
; CHECK-NEXT: %q = srem i32 %m, 3
; CHECK-NEXT: call void @use(i32 1)
; CHECK: call void @[[ZERO:f.recurse.clone.[0-9]+]](i32 %m)
; CHECK: define internal void @[[ZERO]](i32 noundef %n)
; CHECK-SAME: [[IN]] {
; CHECK-NEXT: %m = sub i32 %n, 1
; CHECK-NEXT: %q = srem i32 %m, 3
; CHECK-NEXT: call void @use(i32 0)
; CHECK: call void @f.recurse.entry(i32 %m)

; CHECK-LABEL: define internal void @f.recurse.entry(i32 noundef %0)
; CHECK-SAME: [[ENTRY:#[0-9]+]] {
; CHECK-NEXT: %2 = icmp sge i32 %0, 0
; CHECK-NEXT: br i1 %2, label %[[TEST:.*]], label %[[OTHERWISE:.*]]
; CHECK: [[TEST]]:
; CHECK-NEXT: %[[R:.*]] = urem i32 %0, 3
; CHECK-NEXT: switch i32 %[[R]], label %[[OTHERWISE]] [
; CHECK-NEXT: i32 2, label %[[CASE:.*]]
; CHECK-NEXT: ]
; CHECK: [[OTHERWISE]]:
; CHECK-NEXT: call void @f(i32 noundef %0)
; CHECK-NEXT: ret void
; CHECK: [[CASE]]:
; CHECK-NEXT: call void @f.recurse.clone(i32 noundef %0)
; CHECK-NEXT: ret void

; CHECK-DAG: attributes [[OUT]] = { noinline
; CHECK-DAG: attributes [[IN]] = { alwaysinline
; CHECK-DAG: attributes [[ENTRY]] = { alwaysinline
