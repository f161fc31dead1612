; Level 4 takes as many call sites in the module as the limit says, the recursive one included.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --check-prefixes=CHECK,DEFAULT --implicit-check-not=three.recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=3 -S %s | FileCheck %s --check-prefixes=CHECK,THREE
; RUN: %opt -passes='inlinerecursion<level=4>' -inline-recursion-max-callsite-mod=1 -S %s | FileCheck %s --check-prefixes=CHECK,ONE --implicit-check-not=recurse.clone

; CHECK: define i32 @two(
define i32 @two(i32 %n) {
  %r = call i32 @two(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @three(
define i32 @three(i32 %n) {
  %r = call i32 @three(i32 %n)
  ret i32 %r
}

; CHECK:   define i32 @caller1(
; DEFAULT:   call i32 @two.recurse.clone(i32 %n)
; DEFAULT:   call i32 @three(i32 %a)
; THREE:     call i32 @two.recurse.clone(i32 %n)
; THREE:     call i32 @three.recurse.clone(i32 %a)
; ONE:       call i32 @two(i32 %n)
; ONE:       call i32 @three(i32 %a)
define i32 @caller1(i32 %n) {
  %a = call i32 @two(i32 %n)
  %b = call i32 @three(i32 %a)
  ret i32 %b
}
; CHECK:   define i32 @caller2(
; DEFAULT:   call i32 @three(i32 %n)
; THREE:     call i32 @three.recurse.clone(i32 %n)
; ONE:       call i32 @three(i32 %n)
define i32 @caller2(i32 %n) {
  %r = call i32 @three(i32 %n)
  ret i32 %r
}
