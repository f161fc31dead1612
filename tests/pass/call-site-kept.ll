; The new call has the name, the uses, the place and the debug location of the old one.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s

; CHECK-LABEL: define i32 @f(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK-NEXT:    %before = add i32 %n, 1
; CHECK-NEXT:    %result = call i32 @f.recurse.clone(i32 %before), !dbg [[LOCATION:![0-9]+]]{{$}}
; CHECK-NEXT:    %after = add i32 %result, %before
; CHECK-NEXT:    %twice = mul i32 %result, %result
; CHECK-NEXT:    %both = add i32 %after, %twice
; CHECK-NEXT:    ret i32 %both
define i32 @caller(i32 %n) !dbg !3 {
  %before = add i32 %n, 1
  %result = call i32 @f(i32 %before), !dbg !5
  %after = add i32 %result, %before
  %twice = mul i32 %result, %result
  %both = add i32 %after, %twice
  ret i32 %both
}

; CHECK-LABEL: define i32 @unused_and_unnamed(
; CHECK-NEXT:    %1 = call i32 @f.recurse.clone(i32 %n){{$}}
define i32 @unused_and_unnamed(i32 %n) {
  %1 = call i32 @f(i32 %n)
  ret i32 %n
}

; CHECK: [[LOCATION]] = !DILocation(line: 42, column: 7,
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "a.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = distinct !DISubprogram(name: "caller", scope: !1, file: !1, line: 40, type: !4, unit: !0, spFlags: DISPFlagDefinition)
!4 = !DISubroutineType(types: !{null})
!5 = !DILocation(line: 42, column: 7, scope: !3)
