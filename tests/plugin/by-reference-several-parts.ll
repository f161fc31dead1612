; Each part of a struct that is read is a value of its own.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK: define internal i32 @f(i32 %{{.*}}, double %{{.*}})
; CHECK: call i32 @f(i32 %m, double 2.0{{.*}})
; CHECK-LABEL: define i32 @local(
; CHECK: call i32 @f(i32 3, double 1.0{{.*}})

%pair = type { i32, i32, double }
define internal i32 @f(ptr %p) {
  %next = alloca %pair
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %at = getelementptr %pair, ptr %p, i32 0, i32 2
  %x = load double, ptr %at
  %there = getelementptr %pair, ptr %next, i32 0, i32 2
  store double 2.0, ptr %there
  store double %x, ptr @g
  %r = call i32 @f(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

@g = external global double
define i32 @local() {
  %start = alloca %pair
  store i32 3, ptr %start
  %there = getelementptr %pair, ptr %start, i32 0, i32 2
  store double 1.0, ptr %there
  %r = call i32 @f(ptr %start)
  ret i32 %r
}
