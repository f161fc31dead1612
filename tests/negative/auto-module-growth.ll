; A ring that does not fit into a function's share of what the module may grow by, nor into what the other functions leave of it, is not built.
; RUN: %opt -passes='inlinerecursion-pipeline<module-growth=50>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@first.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: 'second' rebuilt as a ring of 2 copies by the automatic policy, with its first test in front of calls, growing by about {{[0-9]+}} instructions
; CHECK: remark: <unknown>:0:0: 'first' not chained: a ring of it would add {{[0-9]+}} instructions, and the module may not grow by more than 50
; CHECK: define internal {{.*}}@second.recurse.clone(

@g = external global i32

define void @first(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @first(i32 %m)
  store i32 %n, ptr @g
  call void @first(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define void @second(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @second(i32 %m)
  store i32 %n, ptr @g
  call void @second(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
