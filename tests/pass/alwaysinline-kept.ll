; The function's own alwaysinline is handed on to the copies at levels that do not add it.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s

; CHECK: define i32 @f(i32 %n) #[[F:[0-9]+]]
; CHECK: define internal i32 @f.recurse.clone(i32 %n) #[[F]]
define i32 @f(i32 %n) alwaysinline {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK: attributes #[[F]] = { alwaysinline "llvm.recurse.clone" }
