; Functions are printed in the order of the module, and callers in the order in which
; the module uses the function, although it is a copy that the pass is run on.  The
; directive at the end makes that neither the order of the text nor its reverse.
; RUN: %opt -passes='print<inlinerecursion>' -disable-output %s 2>&1 | FileCheck %s

; CHECK: Function second Summary:
; CHECK: NumOfCandidateFunCallSite in second: 1
; CHECK-NEXT: NumOfCandidateFunCallSite in b: 1
; CHECK-NEXT: NumOfCandidateFunCallSite in c: 1
; CHECK-NEXT: NumOfCandidateFunCallSite in a: 1
; CHECK: Function first Summary:

define i32 @a(i32 %n) {
  %r = call i32 @second(i32 %n)
  ret i32 %r
}

define i32 @b(i32 %n) {
  %r = call i32 @second(i32 %n)
  ret i32 %r
}

define i32 @second(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  %r = call i32 @second(i32 %m)
  br label %exit
exit:
  ret i32 %n
}

define i32 @c(i32 %n) {
  %r = call i32 @second(i32 %n)
  ret i32 %r
}

define i32 @first(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  %r = call i32 @first(i32 %m)
  br label %exit
exit:
  ret i32 %n
}

uselistorder ptr @second, { 2, 0, 3, 1 }
