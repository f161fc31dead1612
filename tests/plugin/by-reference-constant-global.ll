; Constant memory is as good as a variable.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK-LABEL: define i32 @local(
; CHECK: call i32 @f(i32 4)

@numbers = constant [3 x i32] [i32 3, i32 4, i32 5]

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
  %r = call i32 @f(ptr getelementptr inbounds ([3 x i32], ptr @numbers, i64 0, i64 1))
  ret i32 %r
}
