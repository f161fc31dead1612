; No level from 0 to 4 prints anything.
; RUN: %opt -passes='inlinerecursion<level=0>' -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='inlinerecursion<level=1>' -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='inlinerecursion<level=2>' -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='inlinerecursion<level=3>' -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='inlinerecursion<level=4>' -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s

; CHECK: define internal i32 @f.recurse.clone(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
