; What a function would become before its ring, one that hands on its sum or one with
; a loop, it becomes only with the ring.  Where the module may not grow by that much,
; its body is instruction by instruction what it was.
; RUN: %opt -passes='inlinerecursion-auto<module-growth=0>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD --implicit-check-not=remark
; RUN: %opt -passes='inlinerecursion-auto<copies=0>' -S %s -o %t.none.ll
; RUN: diff %t.ll %t.none.ll
; RUN: FileCheck %s --input-file=%t.ll --implicit-check-not=.recurse. --implicit-check-not=tailrecurse
; RUN: %opt -passes='inlinerecursion-auto' -S %s | FileCheck %s --check-prefix=BUILT

; TOLD-DAG: remark: a.c:7:0: 'nodes' not chained: a ring of it would add {{[0-9]+}} instructions, and the module may not grow by more than 0
; TOLD-DAG: remark: <unknown>:0:0: 'walk' not chained: a ring of it would add {{[0-9]+}} instructions, and the module may not grow by more than 0

; BUILT: @nodes.recurse.sum.recurse.clone
; BUILT: @walk.recurse.clone

; CHECK-LABEL: define i32 @nodes(ptr %n) #{{[0-9]+}} !dbg
; CHECK-NEXT: entry:
; CHECK: %a = call i32 @nodes(ptr %left), !dbg
; CHECK-NEXT: %one = add nsw i32 %a, 1
; CHECK: %b = call i32 @nodes(ptr %right), !dbg
; CHECK-NEXT: %sum = add nsw i32 %one, %b
; CHECK: %result = phi i32 [ 0, %entry ], [ %sum, %rec ]
define i32 @nodes(ptr %n) !dbg !5 {
entry:
  %none = icmp eq ptr %n, null
  br i1 %none, label %exit, label %rec
rec:
  %left = load ptr, ptr %n
  %a = call i32 @nodes(ptr %left), !dbg !8
  %one = add nsw i32 %a, 1
  %r = getelementptr ptr, ptr %n, i64 1
  %right = load ptr, ptr %r
  %b = call i32 @nodes(ptr %right), !dbg !8
  %sum = add nsw i32 %one, %b
  br label %exit
exit:
  %result = phi i32 [ 0, %entry ], [ %sum, %rec ]
  ret i32 %result
}

declare void @visit(ptr)

; CHECK-LABEL: define void @walk(ptr %n)
; CHECK: call void @walk(ptr %left)
; CHECK: call void @walk(ptr %right)
; CHECK-NEXT: br label %exit
define void @walk(ptr %n) {
entry:
  %none = icmp eq ptr %n, null
  br i1 %none, label %exit, label %rec
rec:
  %left = load ptr, ptr %n
  call void @walk(ptr %left)
  call void @visit(ptr %n)
  %r = getelementptr ptr, ptr %n, i64 1
  %right = load ptr, ptr %r
  call void @walk(ptr %right)
  br label %exit
exit:
  ret void
}

!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "a.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = !DISubroutineType(types: !4)
!4 = !{null}
!5 = distinct !DISubprogram(name: "nodes", file: !1, line: 7, scopeLine: 7, type: !3, unit: !0, spFlags: DISPFlagDefinition)
!8 = !DILocation(line: 9, scope: !5)
