; What is left of the function is not forced into a caller that the inliner keeps
; apart, by call or invoke.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s

; CHECK-LABEL: define void @plain(
; CHECK: call void @f({{.*}} #[[NOINLINE:[0-9]+]]
; CHECK: invoke void @f({{.*}} #[[NOINLINE]]
; CHECK: attributes #[[NOINLINE]] = { noinline }

@g = external global i32
declare i32 @personality(...)
define internal void @f(i32 %n) sanitize_address {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
  call void @f(i32 %m)
  store i32 %n, ptr @g
  call void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @plain(i32 %n) personality ptr @personality {
  call void @f(i32 %n)
  invoke void @f(i32 %n) to label %done unwind label %pad
done:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}
