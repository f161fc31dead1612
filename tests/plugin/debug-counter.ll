; The debug counter picks the recursive functions that copies are made of.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -debug-counter=inlinerecursion-function-skip=1,inlinerecursion-function-count=1 -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s

; CHECK-DAG: 'first' not chained: the debug counter skips it
; CHECK-DAG: 'second' rebuilt as a chain of 1 copy
; CHECK-DAG: 'third' not chained: the debug counter skips it

define i32 @first(i32 %n) {
  %r = call i32 @first(i32 %n)
  ret i32 %r
}
define i32 @plain(i32 %n) {
  ret i32 %n
}
define i32 @second(i32 %n) {
  %r = call i32 @second(i32 %n)
  ret i32 %r
}
define i32 @third(i32 %n) {
  %r = call i32 @third(i32 %n)
  ret i32 %r
}
