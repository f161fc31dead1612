; A ring is told as a remark, with the number of its copies; a requested ring over the clone limit as a missed one.
; RUN: %opt -passes=inlinerecursion -maximum-clone-limit-inline-recursion=5 -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --match-full-lines --implicit-check-not=remark
; RUN: %opt -passes=inlinerecursion -maximum-clone-limit-inline-recursion=5 -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=BUILT --match-full-lines --implicit-check-not=remark
; RUN: %opt -passes=inlinerecursion -maximum-clone-limit-inline-recursion=5 -disable-output %s 2>&1 | count 0

; CHECK: remark: <unknown>:0:0: 'ring' rebuilt as a ring of 4 copies, as requested
; CHECK-NEXT: remark: <unknown>:0:0: 'one' rebuilt as a ring of 1 copy, as requested
; CHECK-NEXT: remark: <unknown>:0:0: 'refused' not chained: the ring that it requests would exceed the limit of 5 copies per module; raise -maximum-clone-limit-inline-recursion
; BUILT: remark: <unknown>:0:0: 'ring' rebuilt as a ring of 4 copies, as requested
; BUILT-NEXT: remark: <unknown>:0:0: 'one' rebuilt as a ring of 1 copy, as requested

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
define i32 @one(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 1
  %x = call i32 @one(i32 %r)
  ret i32 %x
}
