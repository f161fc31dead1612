; A request for a ring with more than two self calls that no constant enters is withdrawn, with a remark.
; RUN: %opt -passes=inlinerecursion-requests -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=REMARK --match-full-lines --implicit-check-not=remark
; RUN: FileCheck %s --input-file %t.ll
; RUN: %opt -passes=inlinerecursion-requests -disable-output %s 2>&1 | count 0

; REMARK: remark: <unknown>:0:0: {{.*}}'three'{{.*}}: request withdrawn, it calls itself in 3 places, more than 2, and no constant enters it from outside

declare void @use(i32)

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

; CHECK: define void @three_entered(i32 %n) [[REQUESTED:#[0-9]+]] {
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
