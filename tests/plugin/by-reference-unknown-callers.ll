; Others call the function that takes a pointer, which is still there; its own calls
; pass values, and so do calls with variables. Its address is still its own.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: @table = constant ptr @f
; CHECK-LABEL: define i32 @f(ptr %p)
; CHECK: %n = load i32, ptr %p
; CHECK: call i32 @f.recurse.value(i32 %m)
; CHECK-LABEL: define internal i32 @f.recurse.value(i32 %p)
; CHECK: call i32 @f.recurse.value(i32 %m)
; CHECK-LABEL: define i32 @given(
; CHECK: call i32 @f(ptr %q)
; CHECK-LABEL: define i32 @local(
; CHECK: call i32 @f.recurse.value(i32 3)

@table = constant ptr @f

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

define i32 @given(ptr %q) {
  %r = call i32 @f(ptr %q)
  ret i32 %r
}

define i32 @local() {
  %start = alloca i32
  store i32 3, ptr %start
  %r = call i32 @f(ptr %start)
  ret i32 %r
}
