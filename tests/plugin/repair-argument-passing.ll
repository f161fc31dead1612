; Rewritten calls, those between the copies of a ring too, get back how arguments are passed; what is only known about them stays away.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -inlinerecursion-find-requests=false -S %s | FileCheck %s
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --check-prefix=BARE

; BARE: call i16 @f.recurse.clone(ptr %q, i8 %c, i16 %s, ptr %y)
; BARE: call void @ring.recurse.clone(ptr %x, ptr %p, i32 %m)

; CHECK-LABEL: define i16 @caller(
; CHECK: call signext i16 @f.recurse.clone(ptr byval({ i64, i64 }) align 16 %q, i8 signext %c, i16 inreg zeroext %s, ptr %y)
; CHECK-LABEL: define internal signext i16 @f.recurse.clone(
; CHECK: call signext i16 @f(ptr byval({ i64, i64 }) align 16 %p, i8 signext %c, i16 inreg zeroext %s, ptr %y)
define signext i16 @f(ptr byval({ i64, i64 }) align 16 %p, i8 signext %c, i16 inreg zeroext %s, ptr nonnull align 8 %y) {
  %r = call signext i16 @f(ptr byval({ i64, i64 }) align 16 %p, i8 signext %c, i16 inreg zeroext %s, ptr %y)
  ret i16 %r
}
define i16 @caller(ptr %q, i8 %c, i16 %s, ptr %y) {
  %r = call signext i16 @f(ptr byval({ i64, i64 }) align 16 %q, i8 signext %c, i16 inreg zeroext %s, ptr %y)
  ret i16 %r
}

; CHECK-LABEL: define internal void @ring.recurse.clone(
; CHECK: call void @ring.recurse.clone.{{[0-9]+}}(ptr sret(i32) %x, ptr byval(i64) align 8 %p, i32 %m)
; CHECK-LABEL: define internal void @ring.recurse.clone.
; CHECK: call void @ring.recurse.clone(ptr sret(i32) %x, ptr byval(i64) align 8 %p, i32 %m)
define void @ring(ptr sret(i32) %x, ptr byval(i64) align 8 %p, i32 %n) "specialize-inline-recursion-function" {
  %rest = urem i32 %n, 2
  %m = add i32 %n, %rest
  call void @ring(ptr sret(i32) %x, ptr byval(i64) align 8 %p, i32 %m)
  ret void
}
