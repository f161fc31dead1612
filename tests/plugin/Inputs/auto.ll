@g = external global i32
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
