; A function that is handed along is called by name.
; RUN: %opt -passes='inlinerecursion-auto<copies=0>' -S %s | FileCheck %s

; CHECK-LABEL: define void @up(
; CHECK: call void @[[UP:sort.specialized.ascending[^(]*]](ptr @ascending,
; CHECK-LABEL: define void @down(
; CHECK: call void @[[DOWN:sort.specialized.descending[^(]*]](ptr @descending,
; CHECK: define internal void @[[UP]](
; CHECK: call i32 @ascending(
; CHECK: define internal void @[[DOWN]](
; CHECK: call i32 @descending(

@g = external global i32

define void @sort(ptr %compare, ptr %node) {
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
  call void @sort(ptr @descending, ptr %node)
  ret void
}

