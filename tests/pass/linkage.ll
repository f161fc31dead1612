; Copies are internal whatever the function is, and with that neither hidden, exported nor preemptible.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define

target triple = "x86_64-pc-windows-msvc"

; CHECK: define weak_odr i32 @weak_odr(
define weak_odr i32 @weak_odr(i32 %n) {
  %r = call i32 @weak_odr(i32 %n)
  ret i32 %r
}
; CHECK: define linkonce_odr i32 @linkonce_odr(
define linkonce_odr i32 @linkonce_odr(i32 %n) {
  %r = call i32 @linkonce_odr(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @internal(
define internal i32 @internal(i32 %n) {
  %r = call i32 @internal(i32 %n)
  ret i32 %r
}
; CHECK: define private i32 @private(
define private i32 @private(i32 %n) {
  %r = call i32 @private(i32 %n)
  ret i32 %r
}
; CHECK: define hidden i32 @hidden(
define hidden i32 @hidden(i32 %n) {
  %r = call i32 @hidden(i32 %n)
  ret i32 %r
}
; CHECK: define protected i32 @protected(
define protected i32 @protected(i32 %n) {
  %r = call i32 @protected(i32 %n)
  ret i32 %r
}
; CHECK: define dllexport i32 @dllexport(
define dllexport i32 @dllexport(i32 %n) {
  %r = call i32 @dllexport(i32 %n)
  ret i32 %r
}
; CHECK: define dso_local i32 @local(
define dso_local i32 @local(i32 %n) {
  %r = call i32 @local(i32 %n)
  ret i32 %r
}

; Keeps the internal and the private one in use.
; CHECK: define void @caller(
define void @caller() {
  %a = call i32 @internal(i32 1)
  %b = call i32 @private(i32 1)
  ret void
}

; dso_local is implied by internal, so it is not printed; the verifier insists on
; it.
; CHECK: define internal i32 @weak_odr.recurse.clone(
; CHECK: define internal i32 @linkonce_odr.recurse.clone(
; CHECK: define internal i32 @internal.recurse.clone(
; CHECK: define internal i32 @private.recurse.clone(
; CHECK: define internal i32 @hidden.recurse.clone(
; CHECK: define internal i32 @protected.recurse.clone(
; CHECK: define internal i32 @dllexport.recurse.clone(
; CHECK: define internal i32 @local.recurse.clone(
