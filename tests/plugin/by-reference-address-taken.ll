; A local function whose address is taken keeps its pointer for those who have that.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: @table = constant ptr @f
; CHECK-LABEL: define internal i32 @f(ptr %p)
; CHECK: call i32 @f.recurse.value(i32 %m)
; CHECK-LABEL: define internal i32 @f.recurse.value(i32 %p)

@table = constant ptr @f

define internal i32 @f(ptr %p) {
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
