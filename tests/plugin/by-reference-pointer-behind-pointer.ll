; What is behind a pointer that is read is read in a second round.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: define internal i32 @f(i32 %box)
; CHECK: call i32 @f(i32 %m)

define internal i32 @f(ptr %box) {
  %next = alloca i32
  %inner = alloca ptr
  %p = load ptr, ptr %box
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  store ptr %next, ptr %inner
  %r = call i32 @f(ptr %inner)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @local() {
  %start = alloca i32
  %box = alloca ptr
  store i32 3, ptr %start
  store ptr %start, ptr %box
  %r = call i32 @f(ptr %box)
  ret i32 %r
}
