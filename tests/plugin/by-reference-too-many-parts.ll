; More values than there are registers for them.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s --implicit-check-not=@bad.recurse.value

; CHECK: define {{.*}}@good.recurse.value(

define i32 @good(ptr %p) {
  %next = alloca [7 x i32]
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %p1 = getelementptr i8, ptr %p, i64 4
  %v1 = load i32, ptr %p1
  %p2 = getelementptr i8, ptr %p, i64 8
  %v2 = load i32, ptr %p2
  %p3 = getelementptr i8, ptr %p, i64 12
  %v3 = load i32, ptr %p3
  %p4 = getelementptr i8, ptr %p, i64 16
  %v4 = load i32, ptr %p4
  %p5 = getelementptr i8, ptr %p, i64 20
  %v5 = load i32, ptr %p5
  %r = call i32 @good(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @bad(ptr %p) {
  %next = alloca [7 x i32]
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %p1 = getelementptr i8, ptr %p, i64 4
  %v1 = load i32, ptr %p1
  %p2 = getelementptr i8, ptr %p, i64 8
  %v2 = load i32, ptr %p2
  %p3 = getelementptr i8, ptr %p, i64 12
  %v3 = load i32, ptr %p3
  %p4 = getelementptr i8, ptr %p, i64 16
  %v4 = load i32, ptr %p4
  %p5 = getelementptr i8, ptr %p, i64 20
  %v5 = load i32, ptr %p5
  %p6 = getelementptr i8, ptr %p, i64 24
  %v6 = load i32, ptr %p6
  %r = call i32 @bad(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
