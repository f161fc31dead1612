; Every direct call from outside enters the first copy, wherever it stands and however many there are.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK-LABEL: define i32 @before(
; CHECK:         %a = call i32 @f.recurse.clone(i32 1)
; CHECK:         %b = call i32 @f.recurse.clone(i32 %a)
define i32 @before() {
  %a = call i32 @f(i32 1)
  %b = call i32 @f(i32 %a)
  ret i32 %b
}

; CHECK-LABEL: define i32 @f(
; CHECK:         call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @after(
; CHECK:         %a = call i32 @f.recurse.clone(i32 2)
define i32 @after() {
  %a = call i32 @f(i32 2)
  ret i32 %a
}

; Another recursive function, whose copy is made later, is a caller as well.
; CHECK-LABEL: define i32 @g(
; CHECK:         %a = call i32 @f.recurse.clone(i32 %n)
; CHECK:         %b = call i32 @g(i32 %a)
define i32 @g(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @g(i32 %a)
  ret i32 %b
}

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK:         call i32 @f(i32 %n)
; CHECK-LABEL: define internal i32 @g.recurse.clone(
; CHECK:         %a = call i32 @f.recurse.clone(i32 %n)
; CHECK:         %b = call i32 @g(i32 %a)
