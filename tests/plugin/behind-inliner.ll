; Functions that call each other in a circle are one that calls itself behind the
; inliner.  A ring is built of it there, merged at once, and the marks of what was
; recursive before are gone.  Of what was refused before, only a function without a
; test is asked again: the test may have been hidden in a call.
; RUN: %opt -passes='default<O3>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD --implicit-check-not="'{{refused|hidden}}'"
; RUN: FileCheck %s --input-file=%t.ll --implicit-check-not='@{{.*}}recurse.clone{{.+}}(' --implicit-check-not=inlinerecursion-seen
; RUN: %opt -passes='default<O3>' -inlinerecursion-auto=false -S %s | FileCheck %s --check-prefix=OFF --implicit-check-not=recurse.clone

; TOLD: 'refused' not chained: its recursion becomes a loop
; TOLD: 'destroy' rebuilt as a ring of 3 copies by the automatic policy, with its first test in front of calls
; TOLD: 'hidden' rebuilt as a ring
; OFF: call {{.*}}@destroy(

; CHECK-LABEL: define {{.*}}@destroy(
; CHECK: call {{.*}}@destroy.recurse.clone(
; CHECK-NEXT: br label
; CHECK-NEXT: }
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

define i32 @refused(i32 %n) {
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %some
some:
  call void @release(ptr null)
  %m = add i32 %n, -1
  %r = call i32 @refused(i32 %m)
  ret i32 %r
exit:
  ret i32 0
}

define internal i1 @isNone(i32 %n) {
  %none = icmp eq i32 %n, 0
  ret i1 %none
}

define void @hidden(i32 %n) {
  %none = call i1 @isNone(i32 %n)
  br i1 %none, label %exit, label %some
some:
  %m = add i32 %n, -1
  call void @hidden(i32 %m)
  call void @release(ptr null)
  call void @hidden(i32 %m)
  call void @release(ptr null)
  br label %exit
exit:
  ret void
}

; CHECK: define internal {{.*}}@destroy.recurse.clone(
; CHECK: call {{.*}}@destroy.recurse.clone(
; CHECK: define internal {{.*}}@hidden.recurse.clone(
declare void @release(ptr)
