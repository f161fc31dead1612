; A part that is more aligned than its place in a variable tells.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s --implicit-check-not=@bad.recurse.value

; CHECK: define {{.*}}@good.recurse.value(

define i32 @good(ptr %p) {
  %next = alloca i64
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %place = getelementptr i8, ptr %p, i64 4
  %b = load i32, ptr %place, align 4
  %r = call i32 @good(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @bad(ptr %p) {
  %next = alloca i64
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %place = getelementptr i8, ptr %p, i64 4
  %b = load i32, ptr %place, align 16
  %r = call i32 @bad(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
