; The call that becomes a link between two copies is as plain as the one that enters the chain.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s

; CHECK-LABEL: define i32 @f(
; CHECK-NEXT:    tail call i32 @f(i32 signext %n) #[[#]], !range
define i32 @f(i32 %n) {
  %r = tail call i32 @f(i32 signext %n) nounwind, !range !0
  ret i32 %r
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK-NEXT:    %r = call i32 @f.recurse.clone.[[#]](i32 %n){{$}}
; CHECK-COUNT-8: %r = call i32 @f.recurse.clone.{{[0-9]+\(i32 %n\)$}}
; CHECK:         tail call i32 @f(i32 signext %n) #[[#]], !range
!0 = !{i32 0, i32 2}
