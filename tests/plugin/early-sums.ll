; A sum of two values that end with it is made in front of the calls that they
; were carried over; only in functions that copies were merged into, in the same
; loop, and where it is executed anyway.
; RUN: %opt -passes=inlinerecursion-early-sums -S %s | FileCheck %s

declare i64 @f(ptr)

; CHECK-LABEL: define i64 @merged(
; CHECK: loop:
; CHECK: %v = load i64, ptr %p
; CHECK-NEXT: %sum = add i64 %r, %v
; CHECK-NEXT: br i1 %some, label %call, label %join
; CHECK: join:
; CHECK-NEXT: %below = phi
; CHECK-NEXT: %next = add i64 %sum, %below
define i64 @merged(ptr %start, i1 %some, i1 %again) "llvm.recurse.clone" {
entry:
  br label %loop
loop:
  %p = phi ptr [ %start, %entry ], [ %q, %join ]
  %r = phi i64 [ 0, %entry ], [ %next, %join ]
  %v = load i64, ptr %p
  br i1 %some, label %call, label %join
call:
  %c = call i64 @f(ptr %p)
  br label %join
join:
  %below = phi i64 [ %c, %call ], [ 0, %loop ]
  %sum = add i64 %r, %v
  %next = add i64 %sum, %below
  %q = getelementptr i64, ptr %p, i64 1
  br i1 %again, label %loop, label %exit
exit:
  ret i64 %next
}

; CHECK-LABEL: define i64 @no_copies(
; CHECK: rest:
; CHECK-NEXT: %sum = add
define i64 @no_copies(ptr %p) {
  %v = load i64, ptr %p
  %w = load i64, ptr %p
  br label %rest
rest:
  %sum = add i64 %v, %w
  ret i64 %sum
}

; CHECK-LABEL: define i64 @needed_later(
; CHECK: rest:
; CHECK-NEXT: %sum = add
; CHECK-NEXT: %more = mul
define i64 @needed_later(ptr %p) "llvm.recurse.clone" {
  %v = load i64, ptr %p
  %w = load i64, ptr %p
  br label %rest
rest:
  %sum = add i64 %v, %w
  %more = mul i64 %sum, %v
  ret i64 %more
}

; CHECK-LABEL: define i64 @not_always(
; CHECK: rare:
; CHECK-NEXT: %sum = add
define i64 @not_always(ptr %p, i1 %some) "llvm.recurse.clone" {
  %v = load i64, ptr %p
  %w = load i64, ptr %p
  br i1 %some, label %rare, label %exit
rare:
  %sum = add i64 %v, %w
  ret i64 %sum
exit:
  ret i64 0
}

; CHECK-LABEL: define i64 @may_trap(
; CHECK: rest:
; CHECK: %quotient = sdiv
define i64 @may_trap(ptr %p) "llvm.recurse.clone" {
  %v = load i64, ptr %p
  %w = load i64, ptr %p
  br label %rest
rest:
  %c = call i64 @f(ptr %p)
  %quotient = sdiv i64 %v, %w
  ret i64 %quotient
}

; CHECK-LABEL: define i64 @in_another_loop(
; CHECK: exit:
; CHECK-NEXT: %sum = add
define i64 @in_another_loop(ptr %p, i1 %again) "llvm.recurse.clone" {
  br label %loop
loop:
  %v = load volatile i64, ptr %p
  %w = load volatile i64, ptr %p
  br i1 %again, label %loop, label %exit
exit:
  %sum = add i64 %v, %w
  ret i64 %sum
}
