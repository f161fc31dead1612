; Calls through pointers, of intrinsics and of assembly count as calls; an invoke does not.
; RUN: %opt -passes='inlinerecursion<level=1>' -S %s | FileCheck %s --implicit-check-not='define internal'

declare i32 @__gxx_personality_v0(...)
declare void @other()
declare i32 @llvm.ctpop.i32(i32)

; CHECK: define i32 @pointer(
define i32 @pointer(ptr %p) {
  call void %p()
  %r = call i32 @pointer(ptr %p)
  ret i32 %r
}

; CHECK: define i32 @intrinsic(
define i32 @intrinsic(i32 %n) {
  %c = call i32 @llvm.ctpop.i32(i32 %n)
  %r = call i32 @intrinsic(i32 %c)
  ret i32 %r
}

; CHECK: define i32 @assembly(
define i32 @assembly(i32 %n) {
  call void asm "", ""()
  %r = call i32 @assembly(i32 %n)
  ret i32 %r
}

; CHECK: define i32 @invokes(
define i32 @invokes(i32 %n) personality ptr @__gxx_personality_v0 {
  invoke void @other() to label %ok unwind label %bad
ok:
  %r = call i32 @invokes(i32 %n)
  ret i32 %r
bad:
  %e = landingpad { ptr, i32 } catch ptr null
  ret i32 0
}

; CHECK: define internal i32 @invokes.recurse.clone(
