; A chain of one: callers enter the copy, the copy calls the function, which calls itself.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not=define --implicit-check-not='call{{ }}'

; CHECK:       define i32 @f(i32 %n) #[[MARKED:[0-9]+]] {
; CHECK:         %r = call i32 @f(i32 %m)
define i32 @f(i32 %n) {
entry:
  %done = icmp eq i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 1
rec:
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  %s = add i32 %r, %n
  ret i32 %s
}

; CHECK-LABEL: define i32 @caller(i32 %n) {
; CHECK-NEXT:    %r = call i32 @f.recurse.clone(i32 %n)
; CHECK-NEXT:    ret i32 %r
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK:       define internal i32 @f.recurse.clone(i32 %n) #[[MARKED]] {
; CHECK-NEXT:  entry:
; CHECK-NEXT:    %done = icmp eq i32 %n, 0
; CHECK-NEXT:    br i1 %done, label %base, label %rec
; CHECK:       base:
; CHECK-NEXT:    ret i32 1
; CHECK:       rec:
; CHECK-NEXT:    %m = sub i32 %n, 1
; CHECK-NEXT:    %r = call i32 @f(i32 %m)
; CHECK-NEXT:    %s = add i32 %r, %n
; CHECK-NEXT:    ret i32 %s

; CHECK: attributes #[[MARKED]] = { "llvm.recurse.clone" }
