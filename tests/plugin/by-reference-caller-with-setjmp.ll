; A variable of a function that calls setjmp is in memory when longjmp comes back;
; one of another function need not be.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK-LABEL: define i32 @jumps(
; CHECK: call i32 @f(ptr %start)
; CHECK-LABEL: define i32 @plain(
; CHECK: call i32 @f.recurse.value(i32 3)

@place = global [32 x i64] zeroinitializer
declare i32 @setjmp(ptr) returns_twice

define i32 @f(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %r = call i32 @f(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @jumps() {
  %start = alloca i32
  store i32 3, ptr %start
  %came = call i32 @setjmp(ptr @place)
  %r = call i32 @f(ptr %start)
  ret i32 %r
}

define i32 @plain() {
  %start = alloca i32
  store i32 3, ptr %start
  %r = call i32 @f(ptr %start)
  ret i32 %r
}
