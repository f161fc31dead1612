; Constants beside the argument that decides are not followed for ever: the first
; specialisation decides nothing, so its call goes to the ring.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='define internal void @f.specialized'

declare void @use(i32, i32)

define internal void @f(i32 %n, i32 %p) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 4
  call void @use(i32 %r, i32 %p)
  %stop = icmp slt i32 %n, 1
  br i1 %stop, label %out, label %rec
rec:
  %m = sub i32 %n, 1
  %q = mul i32 %p, 3
  call void @f(i32 %m, i32 %q)
  br label %out
out:
  ret void
}

define void @caller(i32 %n) {
  call void @f(i32 %n, i32 7)
  ret void
}

; CHECK: call void @f.specialized._.7(i32 %n, i32 7)
; CHECK: define internal void @f.specialized._.7(
; CHECK: call void @f.recurse.clone{{[.0-9]*}}(i32 %m, i32 21)
