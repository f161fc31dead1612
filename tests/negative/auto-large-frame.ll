; With more than 256 bytes of local variables in memory a function gets copies for states
; and no others, and one remark says which.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -pass-remarks-output=%t.yaml -S %s -o %t.ll 2> %t.remarks
; RUN: FileCheck %s --input-file=%t.remarks --implicit-check-not=remark:
; RUN: FileCheck %s --check-prefix=IR --input-file=%t.ll --implicit-check-not=inlinerecursion-protected
; RUN: FileCheck %s --check-prefix=NAMES --input-file=%t.yaml

; Without the policy, or with another reason beside it, it is protected as it was.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3;no-auto>' -pass-remarks-missed=inlinerecursion -pass-remarks-output=%t.without.yaml -disable-output %s 2> %t.without
; RUN: FileCheck %s --check-prefix=WITHOUT --input-file=%t.without --implicit-check-not=remark:

; CHECK-DAG: remark: {{.*}}: 'chained' rebuilt as a chain
; CHECK-DAG: remark: {{.*}}: 'large' not chained: its local variables take more stack than inlinerecursion-max-frame-size allows; keep large variables elsewhere
; CHECK-DAG: remark: {{.*}}: 'kept' not chained: it, or a call of it, is not to be inlined (noinline)
; CHECK-DAG: remark: {{.*}}: 'toggle' rebuilt for 2 states of 'flag' (true, false) by the automatic policy

; IR-NOT: @{{large|kept}}.{{recurse|specialized}}
; IR: define internal {{.*}}@toggle.specialized
; IR-NOT: @{{large|kept}}.{{recurse|specialized}}

; NAMES-DAG: Name: AutoLargeFrame
; NAMES-DAG: Name: NoInline
; NAMES-DAG: Name: AutoStates

; WITHOUT-DAG: remark: {{.*}}: 'large' not chained: its local variables take more stack
; WITHOUT-DAG: remark: {{.*}}: 'toggle' not chained: its local variables take more stack
; WITHOUT-DAG: remark: {{.*}}: 'kept' not chained: it, or a call of it, is not to be inlined

@g = external global i32
declare void @use(ptr)

define i32 @large(i32 %n) {
  %x = alloca [200 x i8]
  %y = alloca [57 x i8]
  %m = sub i32 %n, 1
  %r = call i32 @large(i32 %m)
  store volatile i32 %r, ptr @g
  %s = sub i32 %n, %r
  ret i32 %s
}
define i32 @chained(i32 %n) {
  %x = alloca [200 x i8]
  %y = alloca [56 x i8]
  %m = sub i32 %n, 1
  %r = call i32 @chained(i32 %m)
  ret i32 %r
}

define void @toggle(i1 %flag, ptr %node) {
entry:
  %x = alloca [300 x i8]
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  call void @use(ptr %x)
  %kind = select i1 %flag, i32 7, i32 9
  %value = zext i1 %flag to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @toggle(i1 %not, ptr %first)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @kept(i1 %flag, ptr %node) noinline {
entry:
  %x = alloca [300 x i8]
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  call void @use(ptr %x)
  %kind = select i1 %flag, i32 7, i32 9
  %value = zext i1 %flag to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @kept(i1 %not, ptr %first)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @toggle(i1 true, ptr %node)
  call void @kept(i1 true, ptr %node)
  ret void
}
