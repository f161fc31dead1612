; A function that copies are merged into begins at a cache line, whatever stands in
; front of it, or where its own alignment has it.
; RUN: %opt -passes='inlinerecursion-auto' -S %s | FileCheck %s

; CHECK: define internal void @f.recurse.clone({{.*}}) {{.*}}align 64 {
; CHECK: define internal void @g.recurse.clone({{.*}}) {{.*}}align 128 {

@v = external global i32

define void @f(i32 %n) align 16 {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  store i32 %n, ptr @v
  call void @f(i32 %m)
  store i32 %m, ptr @v
  br label %exit
exit:
  ret void
}
define void @g(i32 %n) align 128 {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @g(i32 %m)
  store i32 %n, ptr @v
  call void @g(i32 %m)
  store i32 %m, ptr @v
  br label %exit
exit:
  ret void
}
