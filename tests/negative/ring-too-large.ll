; A request for a ring that would become too large is withdrawn. Two calls in 9 instructions, ten copies: the closing one has 9, the next are inlined with 9, 27, 63, 135 and 279, then one has 567, and the last three are inlined with 9, 27 and 63.
; RUN: %opt -passes='inlinerecursion-pipeline<no-auto>' -inlinerecursion-max-ring-size=10 -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --check-prefix=WITHDRAWN --implicit-check-not=recurse.clone
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --check-prefix=KEPT

; WITHDRAWN: 'f' not chained: request withdrawn, a ring of 10 copies would have 639 instructions, more than 10
; WITHDRAWN: 'f' not chained: it calls itself in 2 places
; WITHDRAWN-NOT: specialize-inline-recursion-function
; KEPT: 'f' rebuilt as a ring of 4 copies
define i32 @f(i32 %n) "specialize-inline-recursion-function" {
  %rest = urem i32 %n, 4
  %done = icmp eq i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 %rest
rec:
  %m = sub i32 %n, 1
  %a = call i32 @f(i32 %m)
  %b = call i32 @f(i32 %rest)
  %sum = sub i32 %a, %b
  ret i32 %sum
}
