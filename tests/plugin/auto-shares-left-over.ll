; A share that is too small for copies is for the next function; if it is too small for that one, too, the first one gets what is left.
; RUN: %opt -passes='inlinerecursion-pipeline<module-growth=50>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --implicit-check-not="'small' not chained: a ring"

; CHECK: 'small' rebuilt as a ring of 2 copies by the automatic policy, with its first test in front of calls, growing by about 27 instructions
; CHECK: 'large' not chained: a ring of it would add {{[0-9]+}} instructions, and the module may not grow by more than 50

@g = external global i32

define void @small(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @small(i32 %m)
  store i32 %n, ptr @g
  call void @small(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define void @large(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @large(i32 %m)
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  store volatile i32 %n, ptr @g
  call void @large(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
