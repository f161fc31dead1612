; One specialisation serves all calls with the same constants, from outside and by different steps of the recursion.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion -S %s | grep -c '^define internal i32 @f.specialized' | FileCheck %s --check-prefix=COUNT

define internal i32 @f(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %done = icmp ult i32 %n, 2
  br i1 %done, label %base, label %rec
base:
  ret i32 %r
rec:
  %m1 = sub i32 %n, 1
  %m2 = sub i32 %n, 2
  %a = call i32 @f(i32 %m1)
  %b = call i32 @f(i32 %m2)
  %s = add i32 %a, %b
  ret i32 %s
}

; CHECK-LABEL: define i32 @caller(
; CHECK: call i32 @f.specialized.20(i32 20)
; CHECK: call i32 @f.specialized.20(i32 20)
; CHECK: call i32 @f.specialized.18(i32 18)
define i32 @caller() {
  %a = call i32 @f(i32 20)
  %b = call i32 @f(i32 20)
  %c = call i32 @f(i32 18)
  ret i32 %c
}

; CHECK-LABEL: define i32 @another(
; CHECK: call i32 @f.specialized.20(i32 20)
define i32 @another() {
  %a = call i32 @f(i32 20)
  ret i32 %a
}

; 0 to 20.
; COUNT: {{^21$}}
