; What a function or a call says about itself, the copy says too; what concerns the symbol goes with the linkage.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -S %s | FileCheck %s
target triple = "x86_64-unknown-linux-gnu"

declare ptr @work(i64) allocsize(0)
declare void @barrier() convergent
declare i32 @__gxx_personality_v0(...)

define dllexport fastcc ptr @all(i64 %n) hot allocsize(0) convergent "wasm-export-name"="all" section "there" partition "part" gc "statepoint-example" personality ptr @__gxx_personality_v0 {
  call void @barrier() convergent
  %p = call ptr @work(i64 %n) nomerge
  %r = call fastcc ptr @all(i64 %n)
  ret ptr %p
}
define available_externally i32 @elsewhere(i32 %n) {
  %r = call i32 @elsewhere(i32 %n)
  ret i32 %r
}
define i32 @strict(i32 %n) strictfp {
  %r = call i32 @strict(i32 %n) strictfp
  ret i32 %r
}
; CHECK: define internal fastcc ptr @all.recurse.clone(i64 %n) #[[ALL:[0-9]+]] section "there" partition "part" gc "statepoint-example" personality ptr @__gxx_personality_v0
; CHECK-NEXT: call void @barrier() #[[CONVERGENT:[0-9]+]]
; CHECK-NEXT: call ptr @work(i64 %n) #[[NOMERGE:[0-9]+]]
; CHECK: define internal i32 @elsewhere.recurse.clone(
; CHECK: define internal i32 @strict.recurse.clone(i32 %n) #[[STRICT:[0-9]+]]
; CHECK-DAG: attributes #[[ALL]] = { convergent hot allocsize(0) "llvm.recurse.clone" "wasm-export-name"="all" }
; CHECK-DAG: attributes #[[CONVERGENT]] = { convergent }
; CHECK-DAG: attributes #[[NOMERGE]] = { nomerge }
; CHECK-DAG: attributes #[[STRICT]] = { strictfp "llvm.recurse.clone" }
