; What self calls bring, and a function only adds up, is handed on to them: the
; last one is a tail call then.  Where no inliner follows, where equal calls merge,
; and where no ring is built, the function stays as it is.
; RUN: %opt -passes='inlinerecursion-pipeline<copies=2>' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD --implicit-check-not=recurse.sum
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes='inlinerecursion-pipeline<copies=1>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='default<O3>' -verify-each -disable-output %s

; TOLD: remark: a.c:7:0: 'nodes' rebuilt as a ring of 2 copies by the automatic policy, with its first test in front of calls, growing by about {{[0-9]+}} instructions, handing its sum on from self call to self call{{$}}
; TOLD: 'fib' rebuilt as a ring of 2 copies by the automatic policy, so that equal calls merge

; CHECK-LABEL: define i32 @nodes(ptr %n)
; CHECK-NEXT: onward:
; CHECK-NEXT: %[[R:[0-9]+]] = call i32 @nodes.recurse.sum(ptr %n, i32 0), !dbg
; CHECK-NEXT: ret i32 %[[R]]
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

; CHECK-LABEL: define i32 @fib(
define i32 @fib(i32 %n) {
entry:
  %last = icmp slt i32 %n, 2
  br i1 %last, label %exit, label %rec
rec:
  %m = add i32 %n, -1
  %a = call i32 @fib(i32 %m)
  %l = add i32 %n, -2
  %b = call i32 @fib(i32 %l)
  %sum = add i32 %a, %b
  br label %exit
exit:
  %result = phi i32 [ %n, %entry ], [ %sum, %rec ]
  ret i32 %result
}

; The second call has become the trip of a loop.
; CHECK-LABEL: define internal i32 @nodes.recurse.sum.recurse.clone(
; CHECK: tailrecurse:
; CHECK: %[[ACC:.*]] = phi i32 [ %0, %entry ], [ %a.sum, %rec ]
; CHECK: %[[MORE:.*]] = add i32 %[[ACC]], 1
; CHECK: %a.sum = call i32 @nodes.recurse.sum.recurse.clone.{{[0-9]+}}(ptr %left, i32 %[[MORE]])
; CHECK-NOT: call
; CHECK: exit:
; CHECK-NEXT: ret i32 %[[ACC]]

!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2, !3}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "a.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = !{i32 7, !"Dwarf Version", i32 4}
!5 = distinct !DISubprogram(name: "nodes", file: !1, line: 7, type: !6, scopeLine: 7, spFlags: DISPFlagDefinition, unit: !0)
!6 = !DISubroutineType(types: !7)
!7 = !{null}
!8 = !DILocation(line: 8, scope: !5)
