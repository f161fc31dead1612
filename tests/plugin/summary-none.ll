; Without a recursive function nothing is counted, nor by a run behind another one: what
; was built then is known.
; RUN: %opt -passes='default<O3>' -pass-remarks-analysis=inlinerecursion -pass-remarks-output=%t.yaml -disable-output %s 2>&1 | count 0
; RUN: not grep Summary %t.yaml
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks-analysis=inlinerecursion -S %S/Inputs/chained.ll -o %t.ll 2>&1 | FileCheck %s --check-prefix=FIRST
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks-missed=inlinerecursion -pass-remarks-analysis=inlinerecursion -S %t.ll -o %t.again.ll 2>&1 | FileCheck %s --check-prefix=AGAIN --implicit-check-not='recursive functions:'
; Passes that are put together by hand leave no marks behind.
; RUN: %opt -passes='inlinerecursion,inlinerecursion-ring-inlining,inlinerecursion-auto' -pass-remarks-analysis=inlinerecursion -S %S/Inputs/auto.ll 2>&1 | FileCheck %s --check-prefix=HAND --implicit-check-not=inlinerecursion.decisions --implicit-check-not='recursive functions:'

; FIRST: recursive function{{s?}}: {{[1-9]}} rebuilt, 0 not
; AGAIN: it was chained before
; HAND: define

declare void @other(i32)
define void @flat(i32 %n) {
  call void @other(i32 %n)
  ret void
}
