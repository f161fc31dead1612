; A local function that nobody calls with a pointer any more is gone, and the other
; one has its name.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: define internal i32 @f(i32 %p)
; CHECK: call i32 @f(i32 %m)
; CHECK-NOT: recurse.value
; CHECK-LABEL: define i32 @local(
; CHECK: call i32 @f(i32 3)

define internal i32 @f(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  store i32 %n, ptr @g
  %r = call i32 @f(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

@g = external global i32
define i32 @local() {
  %start = alloca i32
  store i32 3, ptr %start
  %r = call i32 @f(ptr %start)
  ret i32 %r
}
