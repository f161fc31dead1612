; A global of the name of the annotations that holds something else is left alone.
; RUN: split-file %s %t
; RUN: %opt -passes=inlinerecursion-requests -S %t/declared.ll | FileCheck %s
; RUN: %opt -passes=inlinerecursion-requests -S %t/zero.ll | FileCheck %s
; RUN: %opt -passes=inlinerecursion-requests -S %t/numbers.ll | FileCheck %s

; CHECK: define void @f() {
;--- declared.ll
@llvm.global.annotations = external global [1 x { ptr, ptr, ptr, i32, ptr }]
define void @f() {
  ret void
}
;--- zero.ll
@llvm.global.annotations = appending global [1 x { ptr, ptr, ptr, i32, ptr }] zeroinitializer
define void @f() {
  ret void
}
;--- numbers.ll
@llvm.global.annotations = appending global [2 x { i32 }] [{ i32 } { i32 1 }, { i32 } { i32 2 }]
define void @f() {
  ret void
}
