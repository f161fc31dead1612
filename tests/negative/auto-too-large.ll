; A function whose copies would take too much makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline<function-growth=30>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: remark: <unknown>:0:0: 'f' not chained: two copies of its 11 instructions and 0 bytes of variables, inlined at 2 self calls, would take more than 30 instructions or 1024 bytes
; CHECK: 'taken' rebuilt as a ring of 2 copies by the automatic policy
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32
define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  call void @f(i32 %n)
  store i32 0, ptr @g
  store i32 1, ptr @g
  store i32 2, ptr @g
  store i32 3, ptr @g
  call void @f(i32 %n)
  store i32 0, ptr @g
  br label %exit
exit:
  ret void
}

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
