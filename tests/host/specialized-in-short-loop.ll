; What is called in a loop of few trips, and a known number of them, is inlined up to a third of the size: the loop is to be unrolled.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

declare void @use(i32, i32)

define internal void @short(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = urem i32 %n, 4
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  call void @use(i32 %r, i32 %i)
  %m = sub i32 %n, 1
  call void @short(i32 %m)
  %next = add i32 %i, 1
  %more = icmp ult i32 %next, 5
  br i1 %more, label %loop, label %out
out:
  ret void
}

@limit = external global i32

; The same, but nobody knows how many trips.
define internal void @long(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = urem i32 %n, 4
  %trips = load i32, ptr @limit
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  call void @use(i32 %r, i32 %i)
  %m = sub i32 %n, 1
  call void @long(i32 %m)
  %next = add i32 %i, 1
  %more = icmp ult i32 %next, %trips
  br i1 %more, label %loop, label %out
out:
  ret void
}

define void @caller() {
  call void @short(i32 20)
  call void @long(i32 20)
  ret void
}

; CHECK: define internal void @short.specialized.20(
; CHECK: noinline
; CHECK-NEXT: define internal void @short.specialized.
; CHECK: define internal void @long.specialized.20(
; CHECK-NOT: {{noinline}}
; CHECK: define internal void @long.specialized.0(
