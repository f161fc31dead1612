; A function that only reads may still get null; a reference in C++ is never that.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s --implicit-check-not=@bad.recurse.value

; CHECK: define {{.*}}@good.recurse.value(

define i32 @good(ptr dereferenceable(4) %p, i32 %k) memory(read) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @good(ptr %p, i32 %m)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @bad(ptr %p, i32 %k) memory(read) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @bad(ptr %p, i32 %m)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
