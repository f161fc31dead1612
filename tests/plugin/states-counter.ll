; A counter has a copy for each number; what folds is gone.
; RUN: %opt -passes='inlinerecursion-auto<copies=2>' -pass-remarks=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD
; RUN: FileCheck %s --input-file=%t.ll

; TOLD: 'rows' rebuilt for 4 states of 'row' (0 to 3) by
; CHECK-LABEL: define void @enter(
; CHECK: call void @rows.specialized.0._(i32 0,
; CHECK: define internal void @rows.specialized.0._(
; CHECK-NOT: icmp
; CHECK: call void @rows.specialized.1._(i32 1,
; CHECK: define internal void @rows.specialized.1._(
; CHECK: define internal void @rows.specialized.2._(
; CHECK: call void @rows.specialized.3._(i32 3,
; CHECK: define internal void @rows.specialized.3._(
; CHECK-NEXT: {{^[a-z]+:}}
; CHECK-NEXT: ret void

@g = external global i32

define internal void @rows(i32 %row, ptr %board) {
entry:
  %last = icmp eq i32 %row, 3
  br i1 %last, label %exit, label %rec
rec:
  %square = mul i32 %row, %row
  store volatile i32 %square, ptr @g
  %sum = add i32 %square, %row
  store volatile i32 %sum, ptr @g
  %next = add i32 %row, 1
  br label %again
again:
  call void @rows(i32 %next, ptr %board)
  store volatile i32 %square, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %board) {
  call void @rows(i32 0, ptr %board)
  ret void
}
