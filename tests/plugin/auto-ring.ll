; The ring of the automatic policy: of the function the guard is left, the first
; copy stays a function without that test, the others are inlined, and the second
; call of a body skips a copy.
; RUN: %opt -passes='inlinerecursion-auto<copies=3>' -S %s | FileCheck %s

@g = external global i32

; CHECK-LABEL: define void @f(i32 %n)
; CHECK: icmp eq i32 %n, 0
; CHECK: br i1 %none, label %exit, label %onward
; CHECK: onward:
; CHECK-NEXT: call void @f.recurse.clone(i32 %n)
; CHECK-NEXT: ret void
; CHECK-NEXT: }
define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  store i32 %n, ptr @g
  call void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK: call void @f(
; CHECK: invoke void @f(
define void @caller(i32 %n) personality ptr @personality {
  call void @f(i32 %n)
  invoke void @f(i32 %n) to label %done unwind label %pad
done:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}

; What is no direct call is left alone.
; CHECK-LABEL: define void @indirect(
; CHECK: store ptr @f, ptr @kept
; CHECK: call void @take(ptr @f)
; CHECK: call void %p(i32 1)
define void @indirect(ptr %p) {
  store ptr @f, ptr @kept
  call void @take(ptr @f)
  call void %p(i32 1)
  ret void
}

; CHECK: define internal void @f.recurse.clone(i32 %n) #[[HEAD:[0-9]+]]
; CHECK-NOT: br i1
; CHECK: call void @[[SECOND:f.recurse.clone[.0-9]+]](
; CHECK: call void @[[THIRD:f.recurse.clone[.0-9]+]](
; CHECK: ret void
; CHECK: define internal void @[[SECOND]](i32 %n) #[[INLINED:[0-9]+]]
; CHECK: br i1
; CHECK: call void @[[THIRD]](
; CHECK: call void @f.recurse.guard(
; CHECK: ret void
; CHECK: define internal void @[[THIRD]](i32 %n) #[[INLINED]]
; CHECK: br i1
; CHECK: call void @f.recurse.guard(
; CHECK: call void @f.recurse.guard(
; CHECK: ret void
; CHECK: define internal void @f.recurse.guard(i32 %n) #[[INLINED]]
; CHECK: br i1 %none, label %exit, label %onward
; CHECK: onward:
; CHECK-NEXT: call void @f.recurse.clone(i32 %n)
; CHECK-NEXT: ret void
; CHECK-NOT: define
; CHECK: attributes #[[HEAD]] = { noinline
; CHECK: attributes #[[INLINED]] = { alwaysinline

@kept = external global ptr
declare void @take(ptr)
declare i32 @personality(...)
