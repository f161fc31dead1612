; The printer names the protection behind a decision, if the functions are protected.
; RUN: %opt -passes='inlinerecursion-protect,print<inlinerecursion><level=3>' -disable-output %s 2>&1 | FileCheck %s
; RUN: %opt -passes='print<inlinerecursion><level=3>' -disable-output %s 2>&1 | FileCheck %s --check-prefix=BARE

; CHECK: InlineRecursion: Function f not costed
; CHECK-NEXT: Decision: not chained, another definition may take its place
; BARE: Decision: chain of 1 copy at level 3
define weak i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
