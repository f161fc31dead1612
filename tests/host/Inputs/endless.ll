; A ring whose argument grows for ever, entered with 0. The body has 7 instructions, a specialisation 5.
declare i1 @use(i32)

define internal i32 @f(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %stop = call i1 @use(i32 %r)
  br i1 %stop, label %out, label %rec
rec:
  %m = add i32 %n, 1
  %x = call i32 @f(i32 %m)
  br label %out
out:
  ret i32 %r
}

define i32 @caller() {
  %x = call i32 @f(i32 0)
  ret i32 %x
}
