; Specialisations are internal, and named after the function and what it is specialised for.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

@table = global i32 0

define void @f(i8 %n, ptr %p, float %x, i32 %open) "specialize-inline-recursion-function" {
  %r = urem i8 %n, 4
  call void @f(i8 %r, ptr %p, float %x, i32 %open)
  ret void
}

define void @caller(i32 %n) {
  call void @f(i8 -3, ptr @table, float 1.0, i32 %n)
  call void @f(i8 -3, ptr @table, float 2.0, i32 %n)
  ret void
}

; CHECK: define internal void @f.specialized.-3.table.c._(
; CHECK: define internal void @f.specialized.-3.table.c._.{{[0-9]+}}(
; CHECK: define internal void @f.specialized.1.table.c._(
