; A request is withdrawn, with a remark, for a ring with more than two self calls that no constant enters, and for one around a short loop; not if the copies can be aligned.
; RUN: %opt -passes=inlinerecursion-requests -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=REMARK --match-full-lines --implicit-check-not=remark
; RUN: FileCheck %s --input-file %t.ll
; RUN: %opt -passes=inlinerecursion-requests -disable-output %s 2>&1 | FileCheck %s --check-prefix=WARNING --implicit-check-not=remark
; WARNING: warning: {{.*}}the ring of copies that 'short_loop' asks for is not built: request withdrawn, the loop
; WARNING: warning: {{.*}}the ring of copies that 'three' asks for is not built: request withdrawn, it calls itself in 3 places

; REMARK: remark: <unknown>:0:0: {{.*}}'short_loop'{{.*}}: request withdrawn, the loop around its self call is worth more unrolled
; REMARK: remark: <unknown>:0:0: {{.*}}'three'{{.*}}: request withdrawn, it calls itself in 3 places, more than 2, and no constant enters it from outside; start it with a constant

declare void @use(i32)

; CHECK: define void @short_loop(i32 %n) {
define void @short_loop(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  br label %loop
loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  %m = mul i32 %n, %i
  call void @short_loop(i32 %m)
  %j = add i32 %i, 1
  %more = icmp ult i32 %j, 8
  br i1 %more, label %loop, label %end
end:
  ret void
}

; CHECK: define void @aligned_short_loop(i32 %n) [[REQUESTED:#[0-9]+]] {
define void @aligned_short_loop(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %m = add i32 %n, 1
  br label %loop
loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  call void @aligned_short_loop(i32 %m)
  %j = add i32 %i, 1
  %more = icmp ult i32 %j, 8
  br i1 %more, label %loop, label %end
end:
  ret void
}

; CHECK: define void @aligned_three(i32 %n) [[REQUESTED]] {
define void @aligned_three(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %m = add i32 %n, 1
  call void @aligned_three(i32 %m)
  call void @aligned_three(i32 %n)
  call void @aligned_three(i32 %m)
  ret void
}

; There is nothing to withdraw where nobody asked.
define i32 @not_asking(i32 %n, i32 %d) {
  %m = udiv i32 %n, %d
  %r = call i32 @not_asking(i32 %m, i32 %d)
  %s = add i32 %r, %n
  ret i32 %s
}

; CHECK: define void @three(i32 %n) {
define void @three(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @three(i32 %r)
  call void @three(i32 0)
  call void @three(i32 %r)
  ret void
}

; CHECK: define void @three_entered(i32 %n) [[REQUESTED]] {
define void @three_entered(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @three_entered(i32 %r)
  call void @three_entered(i32 %r)
  call void @three_entered(i32 %r)
  ret void
}

; CHECK: define void @two(i32 %n) [[REQUESTED]] {
define void @two(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  call void @two(i32 %r)
  call void @two(i32 %r)
  ret void
}

define void @caller(i32 %n) {
  call void @three(i32 %n)
  call void @three(i32 undef)
  call void @three_entered(i32 5)
  call void @two(i32 %n)
  ret void
}
; CHECK: attributes [[REQUESTED]] = { "specialize-inline-recursion-function" }
