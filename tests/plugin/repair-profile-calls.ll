; Under a sample profile, calls have weights: rewritten ones get theirs again, and those in copies are scaled. Without one, calls have none.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -S %s | FileCheck %s
; RUN: sed 's/SampleProfile/InstrProf/' %s | %opt -passes='inlinerecursion-pipeline<level=3>' -S | FileCheck %s --check-prefix=COUNTED

declare void @work()

; CHECK-LABEL: define i32 @walk(
; CHECK: call void @work(), !prof ![[OF_REST:[0-9]+]]
; CHECK: call i32 @walk({{.*}} !prof ![[SELF:[0-9]+]]
define i32 @walk(i32 %n) !prof !0 {
  call void @work(), !prof !3
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more, !prof !1
more:
  %m = sub i32 %n, 1
  %r = call i32 @walk(i32 %m), !prof !4
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
; CHECK-LABEL: define i32 @enter(
; CHECK: call i32 @walk.recurse.clone(i32 %n), !prof ![[ENTRY:[0-9]+]]
; COUNTED-LABEL: define i32 @enter(
; COUNTED: call i32 @walk.recurse.clone(i32 %n){{$}}
define i32 @enter(i32 %n) !prof !2 {
  %r = call i32 @walk(i32 %n), !prof !17
  ret i32 %r
}
; CHECK-LABEL: define internal i32 @walk.recurse.clone(
; CHECK: call void @work(), !prof ![[ENTRY]]
; CHECK: call i32 @walk({{.*}} !prof ![[ON:[0-9]+]]
; CHECK-DAG: ![[OF_REST]] = !{!"branch_weights", i32 600}
; CHECK-DAG: ![[SELF]] = !{!"branch_weights", i32 360}
; CHECK-DAG: ![[ENTRY]] = !{!"branch_weights", i32 400}
; CHECK-DAG: ![[ON]] = !{!"branch_weights", i32 240}

!0 = !{!"function_entry_count", i64 1000}
!1 = !{!"branch_weights", i32 400, i32 600}
!2 = !{!"function_entry_count", i64 400}
!3 = !{!"branch_weights", i32 1000}
!4 = !{!"branch_weights", i32 600}

!llvm.module.flags = !{!5}
!5 = !{i32 1, !"ProfileSummary", !6}
!6 = !{!7, !8, !9, !10, !11, !12, !13, !14}
!7 = !{!"ProfileFormat", !"SampleProfile"}
!8 = !{!"TotalCount", i64 10000}
!9 = !{!"MaxCount", i64 1000}
!10 = !{!"MaxInternalCount", i64 1000}
!11 = !{!"MaxFunctionCount", i64 1000}
!12 = !{!"NumCounts", i64 3}
!13 = !{!"NumFunctions", i64 3}
!14 = !{!"DetailedSummary", !15}
!15 = !{!16}
!16 = !{i32 999999, i64 1, i32 2}
!17 = !{!"branch_weights", i32 400}
