; A function with debug info is copied into something the verifier accepts, locations included.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s

; CHECK: define i32 @f(i32 %n) {{.*}}!dbg [[F:![0-9]+]] {
; CHECK:   call i32 @f(i32 %n), !dbg
define i32 @f(i32 %n) !dbg !3 {
  call void @llvm.dbg.value(metadata i32 %n, metadata !6, metadata !DIExpression()), !dbg !5
  %r = call i32 @f(i32 %n), !dbg !5
  ret i32 %r, !dbg !5
}

declare void @llvm.dbg.value(metadata, metadata, metadata)

; CHECK: define internal i32 @f.recurse.clone(i32 %n) {{.*}}!dbg [[COPY:![0-9]+]] {
; CHECK-COUNT-9: call i32 @f.recurse.clone.{{[0-9]+\(i32 %n\), !dbg ![0-9]+$}}
; CHECK:   call i32 @f(i32 %n), !dbg
; CHECK-DAG: [[F]] = distinct !DISubprogram(name: "f"
; CHECK-DAG: [[COPY]] = distinct !DISubprogram(name: "f"
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "a.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = distinct !DISubprogram(name: "f", scope: !1, file: !1, line: 40, type: !4, unit: !0, spFlags: DISPFlagDefinition)
!4 = !DISubroutineType(types: !{null})
!5 = !DILocation(line: 42, column: 7, scope: !3)
!6 = !DILocalVariable(name: "n", arg: 1, scope: !3, file: !1, line: 40, type: !7)
!7 = !DIBasicType(name: "int", size: 32, encoding: DW_ATE_signed)
