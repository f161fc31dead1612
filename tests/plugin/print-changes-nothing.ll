; Printing builds the chains and rings that it tells about in a copy only, and leaves the option that carries the depth alone.
; RUN: %opt -passes='print<inlinerecursion><level=4>' -S %s -o %t.printed.ll 2> %t.out
; RUN: %opt -passes=verify -S %s -o %t.plain.ll
; RUN: diff %t.plain.ll %t.printed.ll
; RUN: FileCheck %s --input-file %t.out
; RUN: %opt -passes='print<inlinerecursion><level=4>,inlinerecursion<level=4>' -S %s -o %t.after.ll 2> /dev/null
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s -o %t.alone.ll
; RUN: diff %t.alone.ll %t.after.ll

; CHECK-DAG: Decision: ring of 4 copies, as requested
; CHECK-DAG: Decision: chain of 10 copies at level 4

define i32 @ring(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %x = call i32 @ring(i32 %r)
  ret i32 %x
}
define i32 @chain(i32 %n) {
  %m = sub i32 %n, 1
  %x = call i32 @chain(i32 %m)
  ret i32 %x
}
define i32 @caller() {
  %x = call i32 @ring(i32 3)
  ret i32 %x
}
