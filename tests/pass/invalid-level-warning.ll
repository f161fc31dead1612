; An invalid level is told on stderr, once when the option is read, and once for every function that gets as far as the decision.
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=7 -S %s -o %t.ll 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=7
; RUN: FileCheck %s --check-prefix=IR --implicit-check-not='define internal' --input-file=%t.ll
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=5 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=5
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=2147483647 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=2147483647
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=-1 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=-1
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=-2147483648 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=-2147483648
; RUN: %legacy_opt -inlinerecursion -inline-recursion-opt-level=7 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --implicit-check-not={{.}} -DLEVEL=7

;      CHECK:InlineRecursion: warning: -inline-recursion-opt-level=[[LEVEL]] is out of range: it takes 0 to 4; level 2 is taken
; CHECK-NEXT:Invalid Inline Recursion Opt Level: [[LEVEL]]
; CHECK-NEXT:Setting to default Inline Recursion Opt Level: 2
; CHECK-NEXT:Invalid Inline Recursion Opt Level: [[LEVEL]]
; CHECK-NEXT:Setting to default Inline Recursion Opt Level: 2

; IR: define internal i32 @f.recurse.clone(
; IR: define internal i32 @g.recurse.clone(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
define i32 @g(i32 %n) {
  %r = call i32 @g(i32 %n)
  ret i32 %r
}

; Nothing is said about those that are turned away before.
declare i32 @declaration(i32)
define i32 @two_calls(i32 %n) {
  %a = call i32 @two_calls(i32 %n)
  %b = call i32 @two_calls(i32 %a)
  ret i32 %b
}
define i32 @not_recursive(i32 %n) {
  %a = call i32 @declaration(i32 %n)
  ret i32 %a
}
define i32 @optnone(i32 %n) optnone noinline {
  %r = call i32 @optnone(i32 %n)
  ret i32 %r
}
define i32 @norecurse(i32 %n) norecurse {
  %r = call i32 @norecurse(i32 %n)
  ret i32 %r
}
define i32 @marked(i32 %n) "llvm.recurse.clone" {
  %r = call i32 @marked(i32 %n)
  ret i32 %r
}
