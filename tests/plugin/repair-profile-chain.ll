; Of the entries of a function, the first copy of its chain has what comes from outside; the others have at most what is left.
; RUN: %opt -passes=inlinerecursion-pipeline -S %s | FileCheck %s

; CHECK: define i32 @down({{.*}} !prof ![[REST:[0-9]+]]
define i32 @down(i32 %n) !prof !0 {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more, !prof !1
more:
  %m = sub i32 %n, 1
  %r = call i32 @down(i32 %m)
  %s = mul i32 %r, %n
  %t = add i32 %s, %r
  ret i32 %t
end:
  ret i32 1
}
; CHECK: define i32 @enter() !prof ![[FIRST:[0-9]+]]
define i32 @enter() !prof !2 {
  %r = call i32 @down(i32 2)
  ret i32 %r
}
; CHECK: define internal i32 @down.recurse.clone({{.*}} !prof ![[FIRST]]
; CHECK-NEXT: icmp
; CHECK-NEXT: br {{.*}} !prof ![[WEIGHTS:[0-9]+]]
; CHECK: define internal i32 @down.recurse.clone.{{[0-9]+}}({{.*}} !prof ![[REST]]
; CHECK: define internal i32 @down.recurse.clone.{{[0-9]+}}({{.*}} !prof ![[REST]]
; CHECK-NOT: inlinerecursion-origin
; CHECK-DAG: ![[REST]] = !{!"function_entry_count", i64 900}
; CHECK-DAG: ![[FIRST]] = !{!"function_entry_count", i64 100}
; CHECK-DAG: ![[WEIGHTS]] = !{!"branch_weights", i32 100, i32 900}

!0 = !{!"function_entry_count", i64 1000}
!1 = !{!"branch_weights", i32 100, i32 900}
!2 = !{!"function_entry_count", i64 100}
