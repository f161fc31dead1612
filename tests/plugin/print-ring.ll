; What is printed about a ring, about one that is refused and about functions that are filtered; none of them is costed.
; RUN: %opt -passes='print<inlinerecursion>' -maximum-clone-limit-inline-recursion=6 -disable-output %s > %t.out 2>&1
; RUN: FileCheck %s --match-full-lines --strict-whitespace --input-file %t.out
; RUN: count 15 < %t.out

; Filtered functions come first, then the rings that were built, then the ones that were not.
;      CHECK:InlineRecursion: Function chained_before not costed
; CHECK-NEXT:   Decision: not chained, it was chained before
; CHECK-NEXT:   Plan: none
; CHECK-NEXT:InlineRecursion: Function not_to_optimise not costed
; CHECK-NEXT:   Decision: not chained, it is not to be optimised (optnone)
; CHECK-NEXT:   Plan: none
; CHECK-NEXT:InlineRecursion: Function not_to_recurse not costed
; CHECK-NEXT:   Decision: not chained, it is marked as not recursive (norecurse)
; CHECK-NEXT:   Plan: none
; CHECK-NEXT:InlineRecursion: Function ring not costed
; CHECK-NEXT:   Decision: ring of 4 copies, as requested
; CHECK-NEXT:   Plan: ring copies=4 rules
; CHECK-NEXT:InlineRecursion: Function refused not costed
; CHECK-NEXT:   Decision: not chained, the ring that it requests would exceed the limit of 6 copies per module
; CHECK-NEXT:   Plan: none

define i32 @ring(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call i32 @ring(i32 %r)
  ret i32 %x
}
define i32 @refused(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call i32 @refused(i32 %r)
  ret i32 %x
}
define i32 @chained_before(i32 %n) "llvm.recurse.clone" {
  %x = call i32 @chained_before(i32 %n)
  ret i32 %x
}
define i32 @not_to_optimise(i32 %n) optnone noinline {
  %x = call i32 @not_to_optimise(i32 %n)
  ret i32 %x
}
define i32 @not_to_recurse(i32 %n) norecurse {
  %x = call i32 @not_to_recurse(i32 %n)
  ret i32 %x
}
define i32 @not_recursive(i32 %n) {
  ret i32 %n
}
