; What every call passes is found by interprocedural constant propagation as well.
; RUN: %opt -passes='inlinerecursion-auto<copies=0>' -S %s | FileCheck %s --implicit-check-not=@sort.specialized --implicit-check-not=@down.specialized

; CHECK: call void @sort(ptr @ascending
; CHECK: call void @exported.specialized

@g = external global i32

define internal void @sort(ptr %compare, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  %c = call i32 %compare(ptr %node)
  store volatile i32 %c, ptr @g
  %first = load ptr, ptr %node
  call void @sort(ptr %compare, ptr %first)
  store volatile i32 %c, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @sort(ptr %compare, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @exported(ptr %compare, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  %c = call i32 %compare(ptr %node)
  store volatile i32 %c, ptr @g
  %first = load ptr, ptr %node
  call void @exported(ptr %compare, ptr %first)
  store volatile i32 %c, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @exported(ptr %compare, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define internal i32 @ascending(ptr %node) {
  %at = getelementptr i32, ptr %node, i64 4
  %v = load i32, ptr %at
  ret i32 %v
}

define internal i32 @descending(ptr %node) {
  %at = getelementptr i32, ptr %node, i64 4
  %v = load i32, ptr %at
  %n = sub i32 0, %v
  ret i32 %n
}

define void @up(ptr %node) {
  call void @sort(ptr @ascending, ptr %node)
  ret void
}
define void @down(ptr %node) {
  call void @exported(ptr @ascending, ptr %node)
  ret void
}
