; A function that others call does not know whether what its argument points to
; changes meanwhile, or is there at all: where it hands the argument through, it
; reads nothing in front of the call.  A local function of which every call passes
; a variable gets values all the same.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK-LABEL: define i32 @changes(
; CHECK-NOT: load i32, ptr %p
; CHECK: call i32 @changes(i32 %{{.*}}, ptr %p)
; CHECK: load i32, ptr %p
; CHECK: load i32, ptr %p
; CHECK: ret i32

; CHECK-LABEL: define internal i32 @changes.recurse.value(i32 %n, i32 %{{.*}})
; CHECK: call i32 @changes.recurse.value(i32 %{{.*}}, i32 %{{.*}})

; CHECK-LABEL: define internal i32 @known(i32 %n, i32 %{{.*}})

; CHECK-LABEL: define i32 @enter(
; CHECK: call i32 @changes.recurse.value(i32 4, i32
; CHECK: call i32 @known(i32 4, i32

@counter = global i32 0

define i32 @changes(i32 %n, ptr %p) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %n, ptr @counter
  %r = call i32 @changes(i32 %m, ptr %p)
  %v = load i32, ptr %p
  %s = mul i32 %r, %v
  ret i32 %s
end:
  %w = load i32, ptr %p
  ret i32 %w
}

define internal i32 @known(i32 %n, ptr %p) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @known(i32 %m, ptr %p)
  %s = mul i32 %r, 3
  ret i32 %s
end:
  %w = load i32, ptr %p
  ret i32 %w
}

define i32 @enter(i32 %x) {
  %v = alloca i32
  %w = alloca i32
  store i32 %x, ptr %v
  store i32 %x, ptr %w
  %r = call i32 @changes(i32 4, ptr %v)
  %s = call i32 @known(i32 4, ptr %w)
  %t = add i32 %r, %s
  ret i32 %t
}
