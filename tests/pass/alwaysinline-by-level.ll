; Copies are alwaysinline at level 4 and at no other, invalid ones included.
; RUN: %opt -passes='inlinerecursion<level=1>' -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes='inlinerecursion<level=2>' -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --check-prefixes=CHECK,ALWAYS
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=5 -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=12 -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN
; RUN: %opt -passes=inlinerecursion -inline-recursion-opt-level=-1 -S %s | FileCheck %s --check-prefixes=CHECK,PLAIN

; CHECK: define i32 @f(i32 %n) #[[F:[0-9]+]]
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
; PLAIN:  define internal i32 @f.recurse.clone(i32 %n) #[[F]]
; ALWAYS: define internal i32 @f.recurse.clone(i32 %n) #[[COPY:[0-9]+]]
; ALWAYS: define internal i32 @f.recurse.clone.[[#]](i32 %n) #[[COPY]]
; ALWAYS: define internal i32 @f.recurse.clone.[[#]](i32 %n) #[[COPY]]

; CHECK:  attributes #[[F]] = { "llvm.recurse.clone" }
; ALWAYS: attributes #[[COPY]] = { alwaysinline "llvm.recurse.clone" }
