define i32 @f(i32 %n) {
entry:
  %done = icmp eq i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 1
rec:
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  %s = add i32 %r, %n
  ret i32 %s
}

define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
