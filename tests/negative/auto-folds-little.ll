; A search through eight nested short loops, of which constants save little, is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='@f.recurse' --implicit-check-not=inlinerecursion-protected

; CHECK: remark: <unknown>:0:0: 'f' not chained: its short loops would be nested 8 deep, and a constant argument saves too little for that
; CHECK: define internal {{.*}}@taken.recurse.clone(

@g = external global i32
@taken_slots = external global [8 x i32]
define internal void @f(i32 %n) {
entry:
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %latch ]
  %slot = getelementptr i32, ptr @taken_slots, i32 %i
  %v = load i32, ptr %slot
  %taken = icmp ne i32 %v, 0
  br i1 %taken, label %latch, label %free
free:
  %sum = load i32, ptr @g
  %more = add i32 %sum, %v
  store i32 %more, ptr @g
  %last = icmp eq i32 %n, 7
  br i1 %last, label %latch, label %rec
rec:
  store i32 1, ptr %slot
  %m = add i32 %n, 1
  call void @f(i32 %m)
  store i32 0, ptr %slot
  br label %latch
latch:
  %next = add i32 %i, 1
  %again = icmp ne i32 %next, 8
  br i1 %again, label %loop, label %exit
exit:
  ret void
}

define void @enter_f() {
  call void @f(i32 0)
  ret void
}

define internal void @taken(i32 %n) {
entry:
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %latch ]
  %slot = getelementptr i32, ptr @taken_slots, i32 %i
  %v = load i32, ptr %slot
  %taken = icmp ne i32 %v, 0
  br i1 %taken, label %latch, label %free
free:
  %sum = load i32, ptr @g
  %more = add i32 %sum, %v
  store i32 %more, ptr @g
  %last = icmp eq i32 %n, 7
  br i1 %last, label %latch, label %rec
rec:
  store i32 1, ptr %slot
  %m = add i32 %n, 1
  call void @taken(i32 %m)
  store i32 0, ptr %slot
  br label %latch
latch:
  %next = add i32 %i, 1
  %again = icmp ne i32 %next, 8
  br i1 %again, label %loop, label %exit
exit:
  ret void
}

define void @enter_taken() {
  call void @taken(i32 1)
  ret void
}
