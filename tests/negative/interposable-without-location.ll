; A call of a function that another definition may replace may lack a debug location; as the function is left alone, the call need not have one.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -S %s | FileCheck %s
; RUN: not --crash %opt -passes='inlinerecursion<level=3>' -S %s 2>&1 | FileCheck %s --check-prefix=ALONE
; ALONE: inlinable function call in a function with debug info must have a !dbg location

; CHECK-NOT: recurse.clone
; CHECK: define i32 @enter(
; CHECK: call i32 @down(i32 %n)
; CHECK-NOT: recurse.clone
define weak i32 @down(i32 %n) !dbg !3 {
  %r = call i32 @down(i32 %n)
  ret i32 %r
}
define i32 @enter(i32 %n) !dbg !6 {
  %r = call i32 @down(i32 %n)
  ret i32 %r
}

!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "a.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = distinct !DISubprogram(name: "down", scope: !1, file: !1, line: 1, type: !4, unit: !0, spFlags: DISPFlagDefinition)
!4 = !DISubroutineType(types: !5)
!5 = !{null}
!6 = distinct !DISubprogram(name: "enter", scope: !1, file: !1, line: 2, type: !4, unit: !0, spFlags: DISPFlagDefinition)
