; A ring that the pass refuses, because it does not know how many values the remainder has, is built in its place with exactly that many copies; but not without a request, nor by the pass alone.
; RUN: %opt -passes=inlinerecursion-pipeline -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll
; RUN: %opt -passes=inlinerecursion-pipeline,verify -disable-output %s
; RUN: %opt -passes='inlinerecursion-pipeline<no-auto>' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=NO-AUTO --implicit-check-not="'signed' no"
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s --check-prefix=PASS --implicit-check-not=recurse.clone

; TOLD-DAG: 'signed' rebuilt as a ring of 9 copies, as requested, one for each remainder
; TOLD-DAG: 'unsigned' rebuilt as a ring of 13 copies, as requested, one for each remainder
; TOLD-DAG: 'power' rebuilt as a ring of 16 copies, as requested, one for each remainder
; TOLD-DAG: 'constant' rebuilt as a ring of 9 copies, as requested
; TOLD-DAG: 'not_asked' rebuilt as a {{.*}} by the automatic policy

; NO-AUTO-DAG: 'signed' rebuilt as a ring of 9 copies, as requested, one for each remainder
; NO-AUTO-DAG: 'not_asked' not chained

; PASS-LABEL: define void @signed(

@g = external global i32

define void @signed(i32 %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 9
  store volatile i32 %r, ptr @g
  %done = icmp sgt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %a = add nsw i32 %n, 1
  call void @signed(i32 %a)
  store volatile i32 %r, ptr @g
  call void @signed(i32 %a)
  br label %end
end:
  ret void
}

define void @not_asked(i32 %n) {
  %r = srem i32 %n, 9
  store volatile i32 %r, ptr @g
  %done = icmp sgt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %a = add nsw i32 %n, 1
  call void @not_asked(i32 %a)
  store volatile i32 %r, ptr @g
  call void @not_asked(i32 %a)
  br label %end
end:
  ret void
}

define void @unsigned(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 13
  store volatile i32 %r, ptr @g
  %done = icmp ugt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %a = add i32 %n, 2
  call void @unsigned(i32 %a)
  store volatile i32 %r, ptr @g
  br label %end
end:
  ret void
}

define void @power(i32 %n) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 16
  store volatile i32 %r, ptr @g
  %done = icmp ugt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %a = add i32 %n, 2
  call void @power(i32 %a)
  store volatile i32 %r, ptr @g
  br label %end
end:
  ret void
}

; Entered with a constant, each activation knows its argument.
define internal void @constant(i32 %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 9
  store volatile i32 %r, ptr @g
  %done = icmp sgt i32 %n, 5
  br i1 %done, label %end, label %on
on:
  %a = add nsw i32 %n, 1
  call void @constant(i32 %a)
  store volatile i32 %n, ptr @g
  call void @constant(i32 %a)
  br label %end
end:
  ret void
}

define void @caller() {
  call void @constant(i32 3)
  ret void
}

; CHECK-LABEL: define void @signed(
; CHECK-LABEL: define void @caller(
; CHECK-NEXT: call void @constant.specialized.
; CHECK-LABEL: define internal void @signed.recurse.clone(
; CHECK-NOT: srem
; CHECK: store volatile i32 0, ptr @g
; The largest number by 13 leaves 10, and by two steps are made to 12 and, behind 11, to 0.
; CHECK-LABEL: define internal void @unsigned.recurse.step(
; CHECK: icmp slt
