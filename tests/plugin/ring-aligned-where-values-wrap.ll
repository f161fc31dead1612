; Unsigned values keep in step with a power of two where they wrap: no sign is asked for, and both ends of the ring are closed.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining,verify -disable-output %s

declare void @use(i32, i32)

define internal void @f(i32 noundef %n, i1 %done) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 2
  %s = srem i32 %n, 2
  call void @use(i32 %r, i32 %s)
  br i1 %done, label %end, label %on
on:
  %a = add i32 %n, 32767
  call void @f(i32 %a, i1 true)
  %b = add i32 %n, -1
  call void @f(i32 %b, i1 false)
  br label %end
end:
  ret void
}

define void @caller(i32 %n, i1 %done) {
  call void @f(i32 %n, i1 %done)
  ret void
}

; CHECK-LABEL: define internal void @f.recurse.clone(
; CHECK-NEXT: %s = srem i32 %n, 2
; CHECK-NEXT: call void @use(i32 0, i32 %s)
; CHECK: call void @[[ONE:f.recurse.clone.[0-9]+]](i32 %a, i1 true)
; CHECK: call void @[[ONE]](i32 %b, i1 false)
; CHECK: define internal void @[[ONE]](
; CHECK: call void @use(i32 1, i32 %s)
; CHECK: call void @f.recurse.clone(i32 %a, i1 true)
; CHECK: call void @f.recurse.clone(i32 %b, i1 false)

; CHECK-LABEL: define internal void @f.recurse.entry(
; CHECK-NEXT: %[[R:.*]] = urem i32 %0, 2
; CHECK-NEXT: switch i32 %[[R]]
