; A second run finds nothing left to do, at whatever level.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s -o %t.once
; RUN: FileCheck %s --input-file=%t.once
; RUN: %opt -passes='inlinerecursion<level=4>,inlinerecursion<level=4>,inlinerecursion<level=3>' -S %s -o %t.thrice
; RUN: diff %t.once %t.thrice
; RUN: %opt -passes='inlinerecursion<level=3>' -S < %t.once > %t.again
; RUN: %opt -passes=verify -S < %t.once > %t.same
; RUN: diff %t.same %t.again

; CHECK: call i32 @f.recurse.clone(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
