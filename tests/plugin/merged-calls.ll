; In a ring that was built to merge equal calls, one of equal calls is left where two tests of the same stood in front of them; functions without the mark stay as they are.
; RUN: %opt -passes='function(inlinerecursion-merged-calls)' -S %s | FileCheck %s

@rows = external global i32

; Twice the same test, and f(row, place + 1) behind each.
; CHECK-LABEL: define i32 @f.recurse.clone
; CHECK: br i1
; CHECK-COUNT-3: call i32 @f.recurse.clone
; CHECK-NOT: call i32 @f.recurse.clone
; CHECK-LABEL: define i32 @other
; CHECK-COUNT-4: call i32 @f.recurse.clone
define i32 @f.recurse.clone(i32 %row, i32 %place) #0 {
entry:
  %next = add i32 %row, 1
  %place.1 = add i32 %place, 1
  %place.2 = add i32 %place, 2
  %all = load i32, ptr @rows
  %last = icmp eq i32 %all, %next
  br i1 %last, label %between, label %left
left:
  %a = call i32 @f.recurse.clone(i32 %next, i32 %place)
  %b = call i32 @f.recurse.clone(i32 %next, i32 %place.1)
  %ab = mul i32 %a, %b
  br label %between
between:
  %x = phi i32 [ 0, %entry ], [ %ab, %left ]
  %x.1 = mul i32 %x, 3
  %x.2 = xor i32 %x.1, %place
  %x.3 = mul i32 %x.2, %row
  %x.4 = add i32 %x.3, %x
  %x.5 = xor i32 %x.4, %x.1
  %x.6 = mul i32 %x.5, %x.2
  %x.7 = add i32 %x.6, %x.3
  %all.again = load i32, ptr @rows
  %last.again = icmp eq i32 %all.again, %next
  br i1 %last.again, label %out, label %right
right:
  %c = call i32 @f.recurse.clone(i32 %next, i32 %place.1)
  %d = call i32 @f.recurse.clone(i32 %next, i32 %place.2)
  %cd = mul i32 %c, %d
  br label %out
out:
  %y = phi i32 [ 0, %between ], [ %cd, %right ]
  %sum = add i32 %x.7, %y
  ret i32 %sum
}

define i32 @other(i32 %n) {
  %a = call i32 @f.recurse.clone(i32 %n, i32 1)
  %b = call i32 @f.recurse.clone(i32 %n, i32 1)
  %c = call i32 @f.recurse.clone(i32 %n, i32 1)
  %d = call i32 @f.recurse.clone(i32 %n, i32 1)
  %ab = sub i32 %a, %b
  %cd = sub i32 %c, %d
  %r = mul i32 %ab, %cd
  ret i32 %r
}

attributes #0 = { noinline nounwind memory(read) willreturn "inlinerecursion-merges" "llvm.recurse.clone" }
