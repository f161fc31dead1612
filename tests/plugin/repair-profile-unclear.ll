; Where callers enter a function more often than it says, all counts stay; so do missing ones, zeros and synthetic ones.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -S %s | FileCheck %s

; CHECK: define i32 @more({{.*}} !prof ![[MORE:[0-9]+]]
define i32 @more(i32 %n) !prof !0 {
  %r = call i32 @more(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @unknown(i32 %n) #{{[0-9]+}} {
define i32 @unknown(i32 %n) {
  %r = call i32 @unknown(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @never({{.*}} !prof ![[ZERO:[0-9]+]]
define i32 @never(i32 %n) !prof !1 {
  %r = call i32 @never(i32 %n)
  ret i32 %r
}
; CHECK: define i32 @guessed({{.*}} !prof ![[GUESSED:[0-9]+]]
define i32 @guessed(i32 %n) !prof !2 {
  %r = call i32 @guessed(i32 %n)
  ret i32 %r
}
define i32 @enter(i32 %n) !prof !3 {
  %a = call i32 @more(i32 %n)
  %b = call i32 @unknown(i32 %a)
  %c = call i32 @never(i32 %b)
  %d = call i32 @guessed(i32 %c)
  ret i32 %d
}
; CHECK: define internal i32 @more.recurse.clone({{.*}} !prof ![[MORE]]
; CHECK: define internal i32 @unknown.recurse.clone(i32 %n) #{{[0-9]+}} {
; CHECK: define internal i32 @never.recurse.clone({{.*}} !prof ![[ZERO]]
; CHECK: define internal i32 @guessed.recurse.clone({{.*}} !prof ![[GUESSED]]
; CHECK-NOT: inlinerecursion-origin
; CHECK-DAG: ![[MORE]] = !{!"function_entry_count", i64 1000}
; CHECK-DAG: ![[ZERO]] = !{!"function_entry_count", i64 0}
; CHECK-DAG: ![[GUESSED]] = !{!"synthetic_function_entry_count", i64 70}

!0 = !{!"function_entry_count", i64 1000}
!1 = !{!"function_entry_count", i64 0}
!2 = !{!"synthetic_function_entry_count", i64 70}
!3 = !{!"function_entry_count", i64 5000}
