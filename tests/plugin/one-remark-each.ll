; Whatever passes a function meets on its way, the user reads once what became of it.
; Why the pass itself refused it is an analysis remark.
; RUN: %opt -passes='default<O3>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD --implicit-check-not=remark
; RUN: FileCheck %s --check-prefix=LEFT --implicit-check-not=inlinerecursion-undecided --input-file=%t.ll
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks-analysis=inlinerecursion -disable-output %s 2>&1 | grep 'refused by the pass' | FileCheck %s --check-prefix=WHY --implicit-check-not=refused
; RUN: %opt -passes='inlinerecursion-pipeline<no-auto>' -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=ALONE --implicit-check-not=remark

; TOLD-DAG: remark: <unknown>:0:0: 'rebuilt' rebuilt as a ring of 5 copies by the automatic policy
; TOLD-DAG: remark: <unknown>:0:0: 'aligned' rebuilt as a ring of 3 copies, as requested, one for each remainder
; TOLD-DAG: remark: <unknown>:0:0: 'weak' not chained: another definition may take its place
; TOLD-DAG: remark: <unknown>:0:0: 'loop' not chained: its recursion becomes a loop
; TOLD-DAG: remark: <unknown>:0:0: 'works' not chained: it has a loop of its own beside its self calls
; No test was uncovered, and the last word is that of the first look or the second.
; TOLD-DAG: remark: <unknown>:0:0: 'undecided' not chained: no test stands in front of its self calls
; TOLD-DAG: remark: <unknown>:0:0: 'gone' not chained: no test stands in front of its self calls

; LEFT: define {{.*}}@undecided(

; WHY-DAG: 'rebuilt' refused by the pass: it calls itself in 2 places, not in exactly one
; WHY-DAG: 'loop' refused by the pass: it is called from 0 places outside itself, not from exactly one
; WHY-DAG: 'works' refused by the pass: it calls itself in 2 places, not in exactly one
; WHY-DAG: 'undecided' refused by the pass: it calls itself in 2 places, not in exactly one
; WHY-DAG: 'gone' refused by the pass: it calls itself in 2 places, not in exactly one

; ALONE-DAG: remark: <unknown>:0:0: 'rebuilt' not chained: it calls itself in 2 places, not in exactly one
; ALONE-DAG: remark: <unknown>:0:0: 'weak' not chained: another definition may take its place
; ALONE-DAG: remark: <unknown>:0:0: 'loop' not chained: it is called from 0 places outside itself, not from exactly one
; ALONE-DAG: remark: <unknown>:0:0: 'works' not chained: it calls itself in 2 places, not in exactly one
; ALONE-DAG: remark: <unknown>:0:0: 'undecided' not chained: it calls itself in 2 places, not in exactly one
; ALONE-DAG: remark: <unknown>:0:0: 'gone' not chained: it calls itself in 2 places, not in exactly one

@g = external global i32
declare i1 @more()

define void @rebuilt(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @rebuilt(i32 %m)
  store i32 %n, ptr @g
  call void @rebuilt(i32 %m)
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

; It still calls itself behind the inliner, and has been decided about.
define void @works(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %loop
loop:
  %again = call i1 @more()
  br i1 %again, label %loop, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @works(i32 %m)
  store i32 %n, ptr @g
  call void @works(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
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

; Behind the inliner it calls itself no more.
define internal i1 @isNever() {
  ret i1 false
}
define void @gone(i32 %n) {
entry:
  %never = call i1 @isNever()
  br i1 %never, label %loop, label %exit
loop:
  %m = lshr i32 %n, 1
  call void @gone(i32 %m)
  call void @gone(i32 %n)
  %again = call i1 @more()
  br i1 %again, label %loop, label %exit
exit:
  ret void
}

define void @aligned(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = srem i32 %n, 3
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = add i32 %n, -1
  call void @aligned(i32 %m)
  store i32 %r, ptr @g
  br label %exit
exit:
  ret void
}
define void @enter(i32 %n) {
  call void @aligned(i32 %n)
  ret void
}
