; A chain at level 0 whose function stays, as somebody else may call it.
define i32 @down(i32 %n) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @down(i32 %m)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @enter() {
  %r = call i32 @down(i32 5)
  ret i32 %r
}
