; Constants that come back to where they started close a cycle of specialisations, also over two arguments.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion -S %s | grep -c '^define internal void @f.specialized' | FileCheck %s --check-prefix=COUNT

declare i1 @use(i32, i32)

define internal void @f(i32 %n, i32 %k) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %stop = call i1 @use(i32 %r, i32 %k)
  br i1 %stop, label %out, label %rec
rec:
  %n1 = add i32 %n, 1
  %next = urem i32 %n1, 4
  %k1 = add i32 %k, 1
  %swap = urem i32 %k1, 3
  call void @f(i32 %next, i32 %swap)
  br label %out
out:
  ret void
}

define void @caller() {
  call void @f(i32 0, i32 0)
  ret void
}

; Twelve steps lead back to the start, whose predecessor is the last one made.
; COUNT: {{^12$}}
; CHECK: define internal void @f.specialized.3.2(
; CHECK: call void @f.specialized.0.0(i32 0, i32 0)
