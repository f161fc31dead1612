; A recursive function that the gate would accept need not ask, unless that is switched off by parameter or option; others are not marked.
; RUN: %opt -passes=inlinerecursion-requests -S %s | FileCheck %s --check-prefixes=CHECK,FOUND
; RUN: %opt -passes='inlinerecursion-requests<find-requests>' -inlinerecursion-find-requests=false -S %s | FileCheck %s --check-prefixes=CHECK,FOUND
; RUN: %opt -passes=inlinerecursion-requests -inlinerecursion-find-requests=false -S %s | FileCheck %s --check-prefixes=CHECK,NONE
; RUN: %opt -passes='inlinerecursion-requests<no-find-requests>' -S %s | FileCheck %s --check-prefixes=CHECK,NONE

; FOUND: define i32 @found(i32 %n) [[REQUESTED:#[0-9]+]] {
; NONE: define i32 @found(i32 %n) {
define i32 @found(i32 %n) {
  %r = urem i32 %n, 4
  %x = call i32 @found(i32 %r)
  ret i32 %x
}
; CHECK: define i32 @no_remainder(i32 %n) {
define i32 @no_remainder(i32 %n) {
  %x = call i32 @no_remainder(i32 %n)
  ret i32 %x
}
; CHECK: define i32 @unknown_bound(i32 %n) {
define i32 @unknown_bound(i32 %n) {
  %r = urem i32 %n, 5
  %x = call i32 @unknown_bound(i32 %r)
  ret i32 %x
}
; CHECK: define i32 @not_recursive(i32 %n) {
define i32 @not_recursive(i32 %n) {
  %r = urem i32 %n, 4
  ret i32 %r
}
; CHECK: define i32 @only_in_circles(i32 %n) {
define i32 @only_in_circles(i32 %n) {
  %r = urem i32 %n, 4
  %x = call i32 @circle(i32 %r)
  ret i32 %x
}
; CHECK: define i32 @circle(i32 %n) {
define i32 @circle(i32 %n) {
  %x = call i32 @only_in_circles(i32 %n)
  ret i32 %x
}
; CHECK: define i32 @not_to_recurse(i32 %n) [[NORECURSE:#[0-9]+]] {
define i32 @not_to_recurse(i32 %n) norecurse {
  %r = urem i32 %n, 4
  %x = call i32 @not_to_recurse(i32 %r)
  ret i32 %x
}
; CHECK: define i32 @not_to_optimise(i32 %n) [[OPTNONE:#[0-9]+]] {
define i32 @not_to_optimise(i32 %n) optnone noinline {
  %r = urem i32 %n, 4
  %x = call i32 @not_to_optimise(i32 %r)
  ret i32 %x
}

; CHECK: define i32 @not_to_grow(i32 %n) [[OPTSIZE:#[0-9]+]] {
define i32 @not_to_grow(i32 %n) optsize {
  %r = urem i32 %n, 4
  %x = call i32 @not_to_grow(i32 %r)
  ret i32 %x
}

; Two self calls, whatever is known of where it starts.
; CHECK: define i32 @open_with_two_calls(i32 %n) {
define i32 @open_with_two_calls(i32 %n) {
  %r = urem i32 %n, 4
  %x = call i32 @open_with_two_calls(i32 %r)
  %y = call i32 @open_with_two_calls(i32 %x)
  ret i32 %y
}
define i32 @start_of_open(i32 %n) {
  %x = call i32 @open_with_two_calls(i32 %n)
  ret i32 %x
}
; CHECK: define i32 @two_calls(i32 %n) {
define i32 @two_calls(i32 %n) {
  %r = urem i32 %n, 4
  %x = call i32 @two_calls(i32 %r)
  %y = call i32 @two_calls(i32 %x)
  ret i32 %y
}
define i32 @start_of_two() {
  %x = call i32 @two_calls(i32 0)
  ret i32 %x
}

; FOUND-DAG: attributes [[REQUESTED]] = { "specialize-inline-recursion-function"="found" }
; CHECK-DAG: attributes [[NORECURSE]] = { norecurse }
; CHECK-DAG: attributes [[OPTSIZE]] = { optsize }
; CHECK-DAG: attributes [[OPTNONE]] = { noinline optnone }
