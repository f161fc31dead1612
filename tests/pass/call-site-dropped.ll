; Call-site attributes, the tail marker and metadata do not pass on to the new call.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='!range' --implicit-check-not='!prof'

; CHECK-LABEL: define ptr @f(
define ptr @f(ptr %p) {
  %r = call ptr @f(ptr %p)
  ret ptr %r
}

; CHECK-LABEL: define ptr @attributes(
; CHECK-NEXT:    %r = call ptr @f.recurse.clone(ptr %p){{$}}
; CHECK-NEXT:    ret ptr %r
define ptr @attributes(ptr %p) {
  %r = call nonnull ptr @f(ptr nonnull %p) nounwind
  ret ptr %r
}

; CHECK-LABEL: define ptr @tail(
; CHECK-NEXT:    %r = call ptr @f.recurse.clone(ptr %p){{$}}
; CHECK-NEXT:    ret ptr %r
define ptr @tail(ptr %p) {
  %r = tail call ptr @f(ptr %p)
  ret ptr %r
}

; CHECK-LABEL: define ptr @notail(
; CHECK-NEXT:    %r = call ptr @f.recurse.clone(ptr %p){{$}}
; CHECK-NEXT:    ret ptr %r
define ptr @notail(ptr %p) {
  %r = notail call ptr @f(ptr %p)
  ret ptr %r
}

; CHECK-LABEL: define i32 @g(
; CHECK-NEXT:    %r = call i32 @g(i32 %n){{$}}
define i32 @g(i32 %n) {
  %r = call i32 @g(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @metadata(
; CHECK-NEXT:    %r = call i32 @g.recurse.clone(i32 %n){{$}}
; CHECK-NEXT:    ret i32 %r
define i32 @metadata(i32 %n) {
  %r = call i32 @g(i32 %n), !range !0, !prof !1
  ret i32 %r
}

!0 = !{i32 0, i32 2}
!1 = !{!"branch_weights", i32 5}
