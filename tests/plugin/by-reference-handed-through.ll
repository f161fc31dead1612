; What is handed through is a value where the function is entered with variables; in
; the function that others enter, it stays a pointer, and what changes becomes a value.
; RUN: %opt -passes=inlinerecursion-promotion -S %s | FileCheck %s

; CHECK-LABEL: define i32 @entered(ptr %p, ptr %q)
; CHECK: call i32 @entered(ptr %next, ptr %q)
; CHECK-LABEL: define internal i32 @entered.recurse.value(i32 %p, i32 %q)
; CHECK: call i32 @entered.recurse.value(i32 %m, i32 %q)
; CHECK-LABEL: define i32 @local(
; CHECK: call i32 @entered.recurse.value(i32 3, i32 5)
; CHECK-LABEL: define i32 @unknown(ptr %p, ptr %q)
; CHECK: call i32 @unknown.recurse.value(i32 %m, ptr %q)
; CHECK-LABEL: define internal i32 @unknown.recurse.value(i32 %p, ptr {{.*}}%q)
; CHECK: call i32 @unknown.recurse.value(i32 %m, ptr %q)

define i32 @entered(ptr %p, ptr %q) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %k = load i32, ptr %q
  store i32 %k, ptr @g
  %r = call i32 @entered(ptr %next, ptr %q)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

@g = external global i32
define i32 @local() {
  %start = alloca i32
  %fixed = alloca i32
  store i32 3, ptr %start
  store i32 5, ptr %fixed
  %r = call i32 @entered(ptr %start, ptr %fixed)
  ret i32 %r
}

define i32 @unknown(ptr %p, ptr %q) {
  %next = alloca i32
  %n = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  store i32 %m, ptr %next
  %k = load i32, ptr %q
  store i32 %k, ptr @g
  %r = call i32 @unknown(ptr %next, ptr %q)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}
