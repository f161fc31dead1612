; Whoever else gets the address may keep it, and write there later.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s --implicit-check-not=@bad.recurse.value

; CHECK: define {{.*}}@good.recurse.value(

declare void @take(ptr)

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
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  call void @take(ptr %next)
  %r = call i32 @bad(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
