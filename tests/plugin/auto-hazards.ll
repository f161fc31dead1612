; What must not be copied, and what the source does not want inlined, is left to itself.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s

; CHECK-NOT: define {{.*}}@{{weak|never|small|cold|must|label|frame}}.recurse
; CHECK: define internal void @taken.recurse.guard(
; CHECK-NOT: define {{.*}}@{{weak|never|small|cold|must|label|frame}}.recurse

@g = external global i32
define weak void @weak(i32 %n)  {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @weak(i32 %m)
  store i32 %n, ptr @g
  call void @weak(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @never(i32 %n) noinline {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @never(i32 %m)
  store i32 %n, ptr @g
  call void @never(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @small(i32 %n) optsize {
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
define void @cold(i32 %n) cold {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @cold(i32 %m)
  store i32 %n, ptr @g
  call void @cold(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @must(i32 %n)  {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @must(i32 %m)
  store i32 %n, ptr @g
  call void @must(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @label(i32 %n)  {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void asm sideeffect "here:", ""()
  call void @label(i32 %m)
  store i32 %n, ptr @g
  call void @label(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
define void @frame(i32 %n) noinline {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %a = call ptr @llvm.returnaddress(i32 0)
  store ptr %a, ptr @g
  %m = lshr i32 %n, 1
  call void @frame(i32 %m)
  store i32 %n, ptr @g
  call void @frame(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
declare ptr @llvm.returnaddress(i32)
define void @taken(i32 %n)  {
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
define void @caller(i32 %n) {
  musttail call void @must(i32 %n)
  ret void
}
