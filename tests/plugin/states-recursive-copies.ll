; A copy that calls itself is asked about like other functions, and may become a ring.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll

; TOLD: 'sort' rebuilt for 2 states of 'compare'
; TOLD: rebuilt as a ring of {{[0-9]+}} copies by the automatic policy
; CHECK: define internal void @sort.specialized.ascending._.recurse.clone

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

