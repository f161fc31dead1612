; Other annotations, annotations of variables and records of another shape are no requests.
; RUN: %opt -passes='inlinerecursion-requests<no-find-requests>' -S %s > %t.after
; RUN: FileCheck %s --input-file %t.after
; RUN: %opt -passes=verify -S %s > %t.before
; RUN: grep '^@llvm.global.annotations' %t.before > %t.before.record
; RUN: grep '^@llvm.global.annotations' %t.after > %t.after.record
; RUN: diff %t.before.record %t.after.record

@request = private constant [37 x i8] c"specialize-inline-recursion-function\00", section "llvm.metadata"
@longer = private constant [38 x i8] c"specialize-inline-recursion-function2\00", section "llvm.metadata"
@other = private constant [6 x i8] c"other\00", section "llvm.metadata"
@unknown = external constant [37 x i8]
@file = private constant [4 x i8] c"a.c\00", section "llvm.metadata"
@variable = global i32 0

@llvm.global.annotations = appending global [8 x { ptr, ptr, ptr, i32, ptr }] [
  { ptr, ptr, ptr, i32, ptr } { ptr @variable, ptr @request, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @other_text, ptr @other, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @longer_text, ptr @longer, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @unknown_text, ptr @unknown, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr null, ptr @request, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @no_text, ptr null, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @both, ptr @other, ptr @file, i32 1, ptr null },
  { ptr, ptr, ptr, i32, ptr } { ptr @both, ptr @request, ptr @file, i32 1, ptr null }
], section "llvm.metadata"

; CHECK: define void @other_text(i32 %n) {
define void @other_text(i32 %n) {
  call void @other_text(i32 %n)
  ret void
}
; CHECK: define void @longer_text(i32 %n) {
define void @longer_text(i32 %n) {
  call void @longer_text(i32 %n)
  ret void
}
; CHECK: define void @unknown_text(i32 %n) {
define void @unknown_text(i32 %n) {
  call void @unknown_text(i32 %n)
  ret void
}
; CHECK: define void @no_text(i32 %n) {
define void @no_text(i32 %n) {
  call void @no_text(i32 %n)
  ret void
}
; CHECK: define void @both(i32 %n) [[REQUESTED:#[0-9]+]] {
define void @both(i32 %n) {
  call void @both(i32 %n)
  ret void
}
; CHECK: attributes [[REQUESTED]] = { "specialize-inline-recursion-function" }
