; A musttail call keeps its arguments.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s --implicit-check-not=@bad.recurse.value

; CHECK: define {{.*}}@good.recurse.value(

define i32 @good(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %r = call i32 @good(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @bad(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  switch i32 %n, label %more [ i32 0, label %end
    i32 1, label %else ]
more:
  %m = sub i32 %n, 1
  %r = musttail call i32 @bad(ptr %p)
  ret i32 %r
else:
  %r2 = call i32 @bad(ptr %next)
  %s = mul i32 %r2, %n
  ret i32 %s
end:
  ret i32 1
}
