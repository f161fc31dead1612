; Where a switch chooses between several ways to recurse, only the leaves are
; left to those who call, and the rest makes the choice.  Nobody has written the
; rest, and nothing is said about leaving it as it is.
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s -o %t.ll 2>&1 | FileCheck %s --check-prefix=TOLD --implicit-check-not=.recurse.rest
; RUN: FileCheck %s --input-file=%t.ll

; TOLD: 'evaluate' rebuilt as a split by the automatic policy, with the 4 instructions up to its first test in front of its 5 self calls, growing by about 24 instructions

; CHECK-LABEL: define i32 @evaluate(ptr %e)
; CHECK: %kind = load i32, ptr %e
; CHECK-NEXT: %[[IS:[a-z0-9]+]] = icmp eq i32 %kind, 0
; CHECK-NEXT: br i1 %[[IS]], label %leaf, label %[[ON:[.0-9a-z]+]]
; CHECK: leaf:
; CHECK: ret i32 %value
; CHECK: [[ON]]:
; CHECK-NEXT: %[[R:[0-9]+]] = call i32 @evaluate.recurse.rest(ptr %e)
; CHECK-NEXT: ret i32 %[[R]]
; CHECK-NOT: call
define i32 @evaluate(ptr %e) {
entry:
  %kind = load i32, ptr %e
  switch i32 %kind, label %one [ i32 0, label %leaf
                                 i32 1, label %sum
                                 i32 2, label %difference ]
leaf:
  %value = load i32, ptr getelementptr (i32, ptr @values, i64 1)
  ret i32 %value
one:
  %a = call i32 @evaluate(ptr @values)
  %n = sdiv i32 %a, 3
  ret i32 %n
sum:
  %b = call i32 @evaluate(ptr @values)
  %c = call i32 @evaluate(ptr %e)
  %m = mul i32 %b, %b
  %s = add i32 %m, %c
  ret i32 %s
difference:
  %f = call i32 @evaluate(ptr %e)
  %g = call i32 @evaluate(ptr @values)
  %d = sub i32 %f, %g
  ret i32 %d
}

; CHECK-LABEL: define internal i32 @evaluate.recurse.rest(ptr %e)
; CHECK-NOT: call i32 @evaluate(
; CHECK: switch i32 %kind, label %one [
; CHECK: i32 1, label %sum
; CHECK: i32 2, label %difference
; CHECK: load i32, ptr @values
; CHECK: call i32 @evaluate.recurse.rest(ptr @values)

@values = external global [2 x i32]
