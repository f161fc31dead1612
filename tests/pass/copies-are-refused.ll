; The walk meets the copies it appended itself, and leaves them alone.
; RUN: %opt -passes='inlinerecursion<level=4>' -maximum-clone-limit-inline-recursion=1000 -S %s | FileCheck %s --implicit-check-not=recurse.clone.recurse.clone
; RUN: %opt -passes='inlinerecursion<level=4>' -maximum-clone-limit-inline-recursion=1000 -S %s | grep -c define | FileCheck %s --check-prefix=COUNT --match-full-lines

; COUNT: 12
; CHECK: define i32 @f(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK: define i32 @caller(
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; CHECK: define internal i32 @f.recurse.clone(
