; The address of a thread-local variable is another one in every thread, so it is not followed, nor is what is computed from it.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --implicit-check-not='@f.specialized'

@t = thread_local global [4 x i8] zeroinitializer

define internal ptr @f(i32 %n, ptr %p) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call ptr @f(i32 %r, ptr %p)
  ret ptr %p
}

; CHECK-LABEL: define void @caller(
; CHECK-NEXT: {{%.*}} = call ptr @f.recurse.clone(i32 %n, ptr @t)
; CHECK-NEXT: {{%.*}} = call ptr @f.recurse.clone(i32 %n, ptr getelementptr inbounds (i8, ptr @t, i64 1))
define void @caller(i32 %n) {
  %a = call ptr @f(i32 %n, ptr @t)
  %b = call ptr @f(i32 %n, ptr getelementptr inbounds (i8, ptr @t, i64 1))
  ret void
}
