; Behind the whole run on a module one line counts what was decided, at the first function
; that was decided about.  What is left of a function that is taken apart counts with it;
; the second look counts, too.  Nothing of it stays in the module.
; RUN: %opt -passes='default<O3>' -pass-remarks-analysis=inlinerecursion -pass-remarks-output=%t.yaml -S %s -o %t.ll 2>&1 | FileCheck %s
; RUN: FileCheck %s --check-prefix=RECORD --input-file=%t.yaml
; RUN: FileCheck %s --check-prefix=LEFT --implicit-check-not=inlinerecursion.decisions --input-file=%t.ll
; RUN: %opt -passes='default<O3>' -S %s -o %t.silent.ll
; RUN: diff %t.silent.ll %t.ll
; Without a second look it stands behind the passes in front of the inliner.
; RUN: %opt -passes=inlinerecursion-pipeline -pass-remarks-analysis=inlinerecursion -S %s 2>&1 | FileCheck %s --check-prefix=FRONT --implicit-check-not=inlinerecursion.decisions
; RUN: %opt -passes='inlinerecursion-pipeline<no-auto>' -pass-remarks-analysis=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=ALONE
; RUN: %opt -passes='default<O3>' -inlinerecursion-auto=false -pass-remarks-analysis=inlinerecursion -S %s 2>&1 | FileCheck %s --check-prefix=ALONE --implicit-check-not=inlinerecursion.decisions

; CHECK-NOT: recursive functions:
; CHECK: remark: <unknown>:0:0: 6 recursive functions: 3 rebuilt, 3 not; +[[#]] instructions
; CHECK-NOT: recursive functions:

; RECORD: --- !Analysis
; RECORD: Name: Summary
; RECORD-NEXT: Function: weak
; RECORD-NEXT: Args:
; RECORD-NEXT: - Functions: '6'
; RECORD-NEXT: - String: ' recursive functions: '
; RECORD-NEXT: - Rebuilt: '3'
; RECORD-NEXT: - String: ' rebuilt, '
; RECORD-NEXT: - Left: '3'
; RECORD-NEXT: - String: ' not; +'
; RECORD-NEXT: - Growth: '{{[1-9][0-9]+}}'
; RECORD-NEXT: - String: ' instructions'
; RECORD-NEXT: ...
; RECORD-NOT: Summary

; LEFT: define {{.*}}@loop(
; FRONT: remark: {{.*}} 6 recursive functions: 2 rebuilt, 4 not; +[[#]] instructions
; FRONT-NOT: recursive functions:
; ALONE: remark: {{.*}} 6 recursive functions: 0 rebuilt, 6 not; +0 instructions
; ALONE-NOT: recursive functions:

@g = external global i32
declare i1 @more()

define void @ring(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @ring(i32 %m)
  store i32 %n, ptr @g
  call void @ring(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define weak i32 @weak(i32 %n) {
  %m = add i32 %n, -1
  %r = call i32 @weak(i32 %m)
  ret i32 %r
}

define i32 @loop(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %some
some:
  store i32 %n, ptr @g
  %m = add i32 %n, -1
  %r = call i32 @loop(i32 %m)
  ret i32 %r
exit:
  ret i32 0
}

define void @undecided(i32 %n) {
entry:
  br label %loop
loop:
  %m = lshr i32 %n, 1
  call void @undecided(i32 %m)
  call void @undecided(i32 %n)
  %again = call i1 @more()
  br i1 %again, label %loop, label %exit
exit:
  ret void
}

define i32 @walk(ptr %n, i32 %depth) {
entry:
  %old = load i32, ptr @g
  %more = add i32 %old, %depth
  store i32 %more, ptr @g
  %left = load ptr, ptr %n
  %none = icmp eq ptr %left, null
  br i1 %none, label %exit, label %rec
rec:
  %m = add i32 %depth, 1
  %a = call i32 @walk(ptr %left, i32 %m)
  store i32 %a, ptr @g
  %r = getelementptr ptr, ptr %n, i64 1
  %right = load ptr, ptr %r
  %b = call i32 @walk(ptr %right, i32 %m)
  %c = sub i32 %a, %b
  br label %exit
exit:
  %x = phi i32 [ %more, %entry ], [ %c, %rec ]
  ret i32 %x
}

define internal i1 @isNone(i32 %n) {
  %none = icmp eq i32 %n, 0
  ret i1 %none
}

define void @hidden(i32 %n) {
  %none = call i1 @isNone(i32 %n)
  br i1 %none, label %exit, label %some
some:
  %m = add i32 %n, -1
  call void @hidden(i32 %m)
  call void @release(ptr null)
  call void @hidden(i32 %m)
  call void @release(ptr null)
  br label %exit
exit:
  ret void
}

declare void @release(ptr)
