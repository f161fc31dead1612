; A recursion that becomes a loop with an accumulator gets no ring, whether it
; asks for one or would be found; one operation more, and it does.
; RUN: %opt -passes=inlinerecursion-pipeline -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s

; CHECK: 'sum' not chained: request withdrawn, without a ring the recursion becomes a loop that needs no stack
; CHECK: 'product' not chained: request withdrawn, without a ring the recursion becomes a loop that needs no stack
; CHECK: 'either' not chained: request withdrawn, without a ring the recursion becomes a loop that needs no stack
; CHECK: 'difference' rebuilt as a ring of 4 copies

define i32 @sum(i32 %n) "specialize-inline-recursion-function" {
  %rest = urem i32 %n, 4
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @sum(i32 %m)
  %s = add i32 %r, %rest
  ret i32 %s
end:
  ret i32 0
}

define i32 @product(i32 %n) {
  %rest = urem i32 %n, 4
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @product(i32 %m)
  %s = mul i32 %rest, %r
  br label %end
end:
  %result = phi i32 [ 1, %0 ], [ %s, %more ]
  ret i32 %result
}

; One self call of two accumulates.
define i32 @either(i32 %n) "specialize-inline-recursion-function" {
  %rest = urem i32 %n, 4
  %m = sub i32 %n, 1
  switch i32 %n, label %more [
    i32 0, label %end
    i32 99, label %twice
  ]
more:
  %r = call i32 @either(i32 %m)
  %s = add i32 %r, %rest
  ret i32 %s
twice:
  %d = call i32 @either(i32 %m)
  %t = sub i32 %rest, %d
  ret i32 %t
end:
  ret i32 0
}

define i32 @difference(i32 %n) {
  %rest = urem i32 %n, 4
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @difference(i32 %m)
  %s = sub i32 %rest, %r
  ret i32 %s
end:
  ret i32 0
}
