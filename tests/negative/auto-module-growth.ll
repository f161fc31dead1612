; A ring that would take the module beyond what it may grow by is not built; a smaller one behind it is.
; RUN: %opt -passes='inlinerecursion-pipeline<module-growth=160>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: 'taken' rebuilt as a ring of 5 copies by the automatic policy, with its first test in front of calls, growing by about {{[0-9]+}} instructions
; CHECK: remark: <unknown>:0:0: 'f' not chained: a ring of it would add {{[0-9]+}} instructions, and the module may not grow by more than 160
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32

define void @taken(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @taken(i32 %m)
  store i32 %n, ptr @g
  call void @taken(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  store i32 %n, ptr @g
  call void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
