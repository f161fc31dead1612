; A profile that LLVM has discarded is told of what calls itself or has copies: once for
; each function of the source, not again by a second run, and as a remark where LLVM
; itself says nothing.
; RUN: %opt -passes='inlinerecursion-discarded-profiles,inlinerecursion-discarded-profiles' -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s
; RUN: sed -e '/^!llvm.module.flags/d' %s | %opt -passes=inlinerecursion-discarded-profiles -pass-remarks-missed=inlinerecursion -disable-output 2>&1 | count 0

; CHECK-NOT: profile
; CHECK: warning: {{.*}}InlineRecursion: the profile of 'itself' was discarded, which was another function when it was instrumented: compile both times at the same -O level and with the same options of the plugin
; CHECK-NEXT: warning: {{.*}}InlineRecursion: the profile of 'copied' was discarded
; CHECK-NEXT: remark: {{.*}}: the profile of 'shared' was discarded
; CHECK-NOT: profile

define void @itself(i32 %n) !annotation !0 {
  call void @itself(i32 %n)
  ret void
}
define internal void @copied.recurse.clone(i32 %n) "llvm.recurse.clone" !annotation !0 {
  call void @copied.recurse.clone.1(i32 %n)
  ret void
}
define internal void @copied.recurse.clone.1(i32 %n) "llvm.recurse.clone" !annotation !0 {
  call void @copied.recurse.clone(i32 %n)
  ret void
}
$shared = comdat any
define linkonce_odr void @shared(i32 %n) comdat !annotation !0 {
  call void @shared(i32 %n)
  ret void
}
define void @plain(i32 %n) !annotation !0 {
  call void @itself(i32 %n)
  ret void
}
define void @otherNote(i32 %n) !annotation !1 {
  call void @otherNote(i32 %n)
  ret void
}
define void @noNote(i32 %n) {
  call void @copied.recurse.clone(i32 %n)
  call void @noNote(i32 %n)
  ret void
}

!0 = !{!"instr_prof_hash_mismatch"}
!1 = !{!"auto-init"}
!llvm.module.flags = !{!2}
!2 = !{i32 1, !"ProfileSummary", !3}
!3 = !{!4, !5, !6, !7, !8, !9, !10, !11}
!4 = !{!"ProfileFormat", !"InstrProf"}
!5 = !{!"TotalCount", i64 1}
!6 = !{!"MaxCount", i64 1}
!7 = !{!"MaxInternalCount", i64 1}
!8 = !{!"MaxFunctionCount", i64 1}
!9 = !{!"NumCounts", i64 1}
!10 = !{!"NumFunctions", i64 1}
!11 = !{!"DetailedSummary", !12}
!12 = !{!13}
!13 = !{i32 10000, i64 1, i32 1}
