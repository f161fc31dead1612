; A local recursive function that takes its number by reference is made to take
; it by value, and is chained then.  One that may be called from elsewhere keeps
; its pointer.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s
; RUN: %opt -passes=inlinerecursion-pipeline -S %s | FileCheck %s --check-prefix=CHAIN

; CHECK: define internal i32 @local(i32 %{{.*}})
; CHECK: define i32 @enter
; CHECK: call i32 @local(i32 3)
; CHECK: define i32 @visible(ptr {{.*}}%p)
; CHAIN: call i32 @local.recurse.clone(i32 3)

define internal i32 @local(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %r = call i32 @local(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @enter() {
  %start = alloca i32
  store i32 3, ptr %start
  %r = call i32 @local(ptr %start)
  ret i32 %r
}

define i32 @visible(ptr %p) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %r = call i32 @visible(ptr %next)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
