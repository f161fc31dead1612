; The function keeps its noinline; its copies lose it, or nothing could be inlined.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --check-prefixes=CHECK,ALWAYS

; CHECK: define i32 @f(i32 %n) #[[F:[0-9]+]]
; CHECK: define internal i32 @f.recurse.clone(i32 %n) #[[COPY:[0-9]+]]
define i32 @f(i32 %n) noinline {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-DAG:  attributes #[[F]] = { noinline "llvm.recurse.clone" }
; PLAIN-DAG:  attributes #[[COPY]] = { "llvm.recurse.clone" }
; ALWAYS-DAG: attributes #[[COPY]] = { alwaysinline "llvm.recurse.clone" }
