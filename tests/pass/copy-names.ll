; A copy is named after the function, made unique against names that are taken; the level is no part of it.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | grep -c 'define internal i32 @"quoted' | FileCheck --check-prefix=TEN --match-full-lines %s

; TEN: 10

; CHECK: define i32 @f(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK: define i32 @f.recurse.clone(i32 %n) {
define i32 @f.recurse.clone(i32 %n) {
  ret i32 %n
}

; CHECK: define i32 @"quoted \22name\22"(
define i32 @"quoted \22name\22"(i32 %n) {
  %r = call i32 @"quoted \22name\22"(i32 %n)
  ret i32 %r
}

; CHECK:      define internal i32 @f.recurse.clone.[[#]](i32 %n)
; CHECK-NEXT:   call i32 @f(i32 %n)
; CHECK:      define internal i32 @"quoted \22name\22.recurse.clone"(i32 %n)
; CHECK-NEXT:   call i32 @"quoted \22name\22"(i32 %n)
