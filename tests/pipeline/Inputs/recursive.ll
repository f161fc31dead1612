define i32 @f(i32 %n) {
entry:
  %slot = alloca i32
  store i32 %n, ptr %slot
  %done = icmp eq i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 1
rec:
  %loaded = load i32, ptr %slot
  %m = sub i32 %loaded, 1
  %r = call i32 @f(i32 %m)
  %s = mul i32 %r, %n
  ret i32 %s
}

define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
