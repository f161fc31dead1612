; Operand bundles do not pass on to the new call; the arguments before them do.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s

; CHECK-LABEL: define i32 @f(
define i32 @f(i32 %n, i32 %k) {
  %r = call i32 @f(i32 %n, i32 %k)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK-NEXT:    %r = call i32 @f.recurse.clone(i32 %n, i32 5){{$}}
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n, i32 5) [ "note"(i32 1, i64 2) ]
  ret i32 %r
}
