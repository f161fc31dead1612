; What a recursion does before its first test is done by those who call, once.
; The rest calls itself only if the test says so.
; RUN: %opt -passes='inlinerecursion-pipeline<copies=0>' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes='inlinerecursion-pipeline<function-growth=24>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: %opt -passes='inlinerecursion-pipeline<function-growth=23>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | count 0
; RUN: %opt -passes='default<O3>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=RING

; TOLD: 'walk' rebuilt as a split by the automatic policy, with the 8 instructions up to its first test in front of its 2 self calls, growing by about 24 instructions
; RING: 'walk.recurse.rest' rebuilt as a ring of

@visits = external global i32

; CHECK-LABEL: define i32 @walk(ptr %n, i32 %depth)
; CHECK: %more = add i32 %old, %depth
; CHECK-NEXT: store i32 %more, ptr @visits
; CHECK-NEXT: %left = load ptr, ptr %n
; CHECK-NEXT: %none = icmp eq ptr %left, null
; CHECK-NEXT: br i1 %none, label %exit, label %[[ON:[.0-9a-z]+]]
; CHECK: exit:
; CHECK-NEXT: ret i32 %more
; CHECK: [[ON]]:
; CHECK-NEXT: %[[R:[0-9]+]] = call i32 @walk.recurse.rest(ptr %n, i32 %depth, ptr %left)
; CHECK-NEXT: ret i32 %[[R]]
; CHECK-NOT: call
define i32 @walk(ptr %n, i32 %depth) {
entry:
  %old = load i32, ptr @visits
  %more = add i32 %old, %depth
  store i32 %more, ptr @visits
  %left = load ptr, ptr %n
  %none = icmp eq ptr %left, null
  br i1 %none, label %exit, label %rec
rec:
  %m = add i32 %depth, 1
  %a = call i32 @walk(ptr %left, i32 %m)
  store i32 %a, ptr @visits
  %r = getelementptr ptr, ptr %n, i64 1
  %right = load ptr, ptr %r
  %b = call i32 @walk(ptr %right, i32 %m)
  %c = sub i32 %a, %b
  br label %exit
exit:
  %x = phi i32 [ %more, %entry ], [ %c, %rec ]
  ret i32 %x
}

; CHECK-LABEL: define internal i32 @walk.recurse.rest(ptr %n, i32 %depth, ptr %left)
; CHECK-NOT: call i32 @walk(
; CHECK: store i32 %{{.*}}, ptr @visits
; CHECK: icmp eq ptr %{{.*}}, null
; CHECK: call i32 @walk.recurse.rest(ptr %left, i32 %m,
; CHECK: store i32 %{{.*}}, ptr @visits
; CHECK: store i32 %{{.*}}, ptr @visits
; CHECK: icmp eq ptr %{{.*}}, null
; CHECK: call i32 @walk.recurse.rest(ptr %right, i32 %m,
; CHECK-NOT: call
; CHECK: {{^}}}
