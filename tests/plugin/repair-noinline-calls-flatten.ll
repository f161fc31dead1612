; A call that is to be inlined at any price is not where the inliner would keep caller and callee apart: both marks at one call are invalid.
; RUN: %opt -passes='inlinerecursion-pipeline<level=4>' -maximum-clone-limit-inline-recursion=30 -S %s | FileCheck %s
target triple = "x86_64-unknown-linux-gnu"

declare void @work()
declare i32 @personality(...)

define internal void @wide(i32 %n) "target-features"="+avx2" {
  call void @work()
  call void @wide(i32 %n)
  ret void
}

; CHECK-LABEL: define void @flatten(
; CHECK: call void @wide.recurse.clone(i32 %n) #[[NOINLINE:[0-9]+]]
; CHECK: invoke void @wide(i32 0) #[[NOINLINE]]
define void @flatten(i32 %n) personality ptr @personality {
  call void @wide(i32 %n) alwaysinline
  invoke void @wide(i32 0) alwaysinline to label %exit unwind label %handler
handler:
  %pad = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %pad
exit:
  ret void
}
; CHECK: attributes #[[NOINLINE]] = { noinline }
