; What is left of a function behind a new ring is merged into older rings that call
; it, and both rings share the bound on what the module grows by.
; RUN: %opt -passes='default<O3>' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes='default<O3>' -inlinerecursion-auto-module-growth=60 -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=SHARED

; TOLD: 'make' rebuilt as a ring
; TOLD: 'destroy' rebuilt as a ring of 3 copies
; SHARED: 'make' rebuilt as a ring of 2 copies
; SHARED: 'destroy' rebuilt as a ring of 2 copies

; CHECK-LABEL: define {{.*}}@make.recurse.clone(
; CHECK-NOT: call {{.*}}@destroy(
; CHECK: call {{.*}}@destroy.recurse.clone(
; CHECK-NOT: call {{.*}}@destroy(
; CHECK: {{^}}}

@g = external global ptr

define void @make(i32 %n) {
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %some
some:
  %m = lshr i32 %n, 1
  call void @make(i32 %m)
  call void @destroy(ptr @g)
  call void @make(i32 %m)
  store ptr null, ptr @g
  br label %exit
exit:
  ret void
}

define void @destroy(ptr %owner) {
  %node = load ptr, ptr %owner
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %some
some:
  call void @erase(ptr %owner, ptr %node)
  br label %exit
exit:
  ret void
}

define internal void @erase(ptr %owner, ptr %node) {
  %left = getelementptr ptr, ptr %node, i64 1
  call void @destroy(ptr %left)
  %right = getelementptr ptr, ptr %node, i64 2
  call void @destroy(ptr %right)
  call void @release(ptr %node)
  ret void
}

declare void @release(ptr)
