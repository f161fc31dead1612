; Without a caller outside, the chain is still built.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define --implicit-check-not='call{{ }}'

; CHECK:      define i32 @f(i32 %n)
; CHECK-NEXT:   call i32 @f(i32 %n)
; CHECK:      define internal i32 @f.recurse.clone(i32 %n)
; CHECK-NEXT:   call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
