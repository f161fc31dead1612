; Integers, floats, null and addresses of globals stand in the place of the arguments that they are passed for.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s

@g = global [4 x i8] zeroinitializer
declare void @use(i32, i128, double, half, ptr, ptr, ptr, <2 x i32>)

define internal void @f(i32 %n, i128 %wide, double %d, half %h, ptr %null, ptr %global, ptr %inside, <2 x i32> %vector) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @use(i32 %r, i128 %wide, double %d, half %h, ptr %null, ptr %global, ptr %inside, <2 x i32> %vector)
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %rec
rec:
  %m = sub i32 %n, 1
  call void @f(i32 %m, i128 %wide, double %d, half %h, ptr %null, ptr %global, ptr %inside, <2 x i32> %vector)
  br label %out
out:
  ret void
}

; CHECK-LABEL: define void @caller(
; CHECK: call void @f.specialized.5.-7.
define void @caller() {
  call void @f(i32 5, i128 -7, double -0.0, half 0xH7E01, ptr null, ptr @g, ptr getelementptr (i8, ptr @g, i64 3), <2 x i32> <i32 1, i32 2>)
  ret void
}

; CHECK: define internal void @f.specialized.5.-7.{{.*}} {
; CHECK-NEXT: call void @use(i32 1, i128 -7, double -0.000000e+00, half 0xH7E01, ptr null, ptr @g, ptr getelementptr (i8, ptr @g, i64 3), <2 x i32> <i32 1, i32 2>)
; CHECK-NEXT: call void @f.specialized.4.-7.
; CHECK-NEXT: ret void
; CHECK: define internal void @f.specialized.0.-7.{{.*}} {
; CHECK-NEXT: call void @use(i32 0, i128 -7,
; CHECK-NEXT: ret void
