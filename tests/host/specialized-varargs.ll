; Named arguments of a variadic ring are replaced; those in its list are passed on as they are and do not tell tuples apart.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='define internal i32 @f.specialized'

declare void @llvm.va_start(ptr)

define internal i32 @f(i32 %n, ...) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %list = alloca [24 x i8]
  call void @llvm.va_start(ptr %list)
  %done = icmp eq i32 %n, 0
  br i1 %done, label %out, label %rec
rec:
  %m = sub i32 %n, 1
  %x = call i32 (i32, ...) @f(i32 %m, double 1.0, i32 %r)
  br label %out
out:
  ret i32 %r
}

; CHECK-LABEL: define void @caller(
; CHECK: call i32 (i32, ...) @f.specialized.1(i32 1, i32 7)
; CHECK: call i32 (i32, ...) @f.specialized.1(i32 1, i32 8, i32 9)
; CHECK: call i32 (i32, ...) @f.specialized.1(i32 1)
define void @caller() {
  %a = call i32 (i32, ...) @f(i32 1, i32 7)
  %b = call i32 (i32, ...) @f(i32 1, i32 8, i32 9)
  %c = call i32 (i32, ...) @f(i32 1)
  ret void
}

; CHECK: define internal i32 @f.specialized.1(i32 %n, ...)
; CHECK: call void @llvm.va_start(
; CHECK: call i32 (i32, ...) @f.specialized.0(i32 0, double 1.000000e+00, i32 1)
; CHECK: define internal i32 @f.specialized.0(i32 %n, ...)
