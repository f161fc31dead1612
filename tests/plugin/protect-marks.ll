; The marks of the protection say why, stand until the repair, and leave real copies and foreign marks alone.
; RUN: %opt -passes=inlinerecursion-protect -S %s | FileCheck %s --check-prefixes=MARKED
; RUN: %opt -passes=inlinerecursion-protect,inlinerecursion-repair -S %s > %t.taken-back
; RUN: %opt -passes=verify -S %s > %t.before
; RUN: cmp %t.before %t.taken-back
; RUN: %opt -passes=inlinerecursion-protect,inlinerecursion-protect,inlinerecursion-repair -S %s | cmp %t.before -

; MARKED: define weak i32 @weak(i32 %n) #[[WEAK:[0-9]+]]
define weak i32 @weak(i32 %n) nounwind {
  %r = call i32 @weak(i32 %n)
  ret i32 %r
}
; MARKED: define i32 @plain(i32 %n) #[[PLAIN:[0-9]+]]
define i32 @plain(i32 %n) {
  ret i32 %n
}
; MARKED: define i32 @taken(i32 %n) {
define i32 @taken(i32 %n) {
  %r = call i32 @taken(i32 %n)
  ret i32 %r
}
; A request is for the gate to judge, recursive or not.
; MARKED: define i32 @requested(i32 %n) #[[REQUESTED:[0-9]+]]
define i32 @requested(i32 %n) cold "specialize-inline-recursion-function" {
  ret i32 %n
}
; MARKED: define weak i32 @chained(i32 %n) #[[CHAINED:[0-9]+]]
define weak i32 @chained(i32 %n) "llvm.recurse.clone" {
  %r = call i32 @chained(i32 %n)
  ret i32 %r
}
; MARKED: define weak i32 @optnone(i32 %n) #[[OPTNONE:[0-9]+]]
define weak i32 @optnone(i32 %n) noinline optnone {
  %r = call i32 @optnone(i32 %n)
  ret i32 %r
}
; MARKED-DAG: attributes #[[WEAK]] = { nounwind "inlinerecursion-protected"="Interposable" "llvm.recurse.clone" }
; MARKED-DAG: attributes #[[PLAIN]] = { "inlinerecursion-protected"="NotRecursive" "llvm.recurse.clone" }
; MARKED-DAG: attributes #[[REQUESTED]] = { cold "specialize-inline-recursion-function" }
; MARKED-DAG: attributes #[[CHAINED]] = { "llvm.recurse.clone" }
; MARKED-DAG: attributes #[[OPTNONE]] = { noinline optnone }
