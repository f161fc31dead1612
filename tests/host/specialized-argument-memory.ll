; A specialisation reaches a global itself that it got as an argument, so it no longer accesses memory by its arguments only.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s
; RUN: %opt -passes='inlinerecursion,deadargelim,gvn' -inline-recursion-specialized-inline-size=0 -S %s | FileCheck %s --check-prefix=KEPT

@g = global i32 0

define internal void @f(i32 %n, ptr %p) memory(argmem: readwrite) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %old = load i32, ptr %p
  %new = add i32 %old, %r
  store i32 %new, ptr %p
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %rec
rec:
  %m = sub i32 %n, 1
  call void @f(i32 %m, ptr %p)
  br label %out
out:
  ret void
}

; KEPT-LABEL: define i32 @caller(
; KEPT: [[VALUE:%.*]] = load i32, ptr @g
; KEPT: ret i32 [[VALUE]]
define i32 @caller() {
  store i32 10, ptr @g
  call void @f(i32 5, ptr @g)
  %v = load i32, ptr @g
  ret i32 %v
}

; What the call says by itself is no longer so, either.
; KEPT-LABEL: define i32 @callerThatTells(
; KEPT: call void @f.specialized.5.g(){{$}}
; KEPT: [[VALUE:%.*]] = load i32, ptr @g
; KEPT: ret i32 [[VALUE]]
define i32 @callerThatTells() {
  store i32 10, ptr @g
  call void @f(i32 5, ptr @g) memory(argmem: readwrite)
  %v = load i32, ptr @g
  ret i32 %v
}

; CHECK: define internal void @f.specialized.5.g(i32 %n, ptr %p) [[ATTRIBUTES:#[0-9]+]] {
; CHECK-NEXT: {{%.*}} = load i32, ptr @g
; CHECK: attributes [[ATTRIBUTES]] = {
; CHECK-NOT: memory(argmem: readwrite)
; CHECK-SAME: }
