; Entries of a ring go around it, and how often is not known: every copy may have all but those of specialisations that only the outside enters.
; RUN: %opt -passes='inlinerecursion-pipeline<find-requests>' -S %s | FileCheck %s

; CHECK: define i32 @around({{.*}} !prof ![[ALL:[0-9]+]]
define i32 @around(i32 %n, ptr %p) "specialize-inline-recursion-function" !prof !0 {
  %k = urem i32 %n, 2
  store volatile i32 %k, ptr %p
  %stop = icmp sgt i32 %n, 100
  br i1 %stop, label %end, label %more, !prof !1
more:
  %m = add i32 %n, 1
  %r = call i32 @around(i32 %m, ptr %p)
  %s = mul i32 %r, %k
  %t = add i32 %s, %m
  ret i32 %t
end:
  ret i32 1
}
define i32 @enter(i32 %n, ptr %p) !prof !2 {
  %r = call i32 @around(i32 %n, ptr %p)
  ret i32 %r
}
define i32 @enter_at_99(ptr %p) !prof !3 {
  %r = call i32 @around(i32 99, ptr %p)
  ret i32 %r
}
; CHECK: define internal i32 @around.recurse.clone({{.*}} !prof ![[ALL]]
; CHECK: define internal i32 @around.recurse.clone.{{[0-9]+}}({{.*}} !prof ![[ALL]]
; CHECK: define internal i32 @around.specialized.99._({{.*}} !prof ![[AT_99:[0-9]+]]
; CHECK: define internal i32 @around.specialized.100._({{.*}} !prof ![[ALL]]
; CHECK-DAG: ![[ALL]] = !{!"function_entry_count", i64 5990}
; CHECK-DAG: ![[AT_99]] = !{!"function_entry_count", i64 10}

!0 = !{!"function_entry_count", i64 6000}
!1 = !{!"branch_weights", i32 500, i32 500}
!2 = !{!"function_entry_count", i64 3000}
!3 = !{!"function_entry_count", i64 10}
