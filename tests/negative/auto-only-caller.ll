; The only caller of a large local function takes that in, and makes no ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK-DAG: remark: <unknown>:0:0: 'f' not chained: it is the only caller of 'large', whose inlining is worth more than copies with calls of it
; CHECK-DAG: 'taken' rebuilt as a ring of 5 copies by the automatic policy
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
  call void @large()
  call void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define internal void @large() {
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  store i32 1, ptr @g
  ret void
}
