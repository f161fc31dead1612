; -pass-remarks-analysis tells the counts of a function that was costed.
; RUN: %opt -passes=inlinerecursion -pass-remarks-analysis=inlinerecursion \
; RUN:   -disable-output %s 2>&1 | FileCheck %s

; CHECK: 'down' has 3 blocks, 7 instructions, 1 branches, 1 calls, 1 self calls, 2 call sites in the module, recursion depth 6, benefit 4 against 0

define internal i32 @down(i32 %n) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = sub i32 %n, 1
  %r = call i32 @down(i32 %m)
  %s = mul i32 %r, %n
  ret i32 %s
end:
  ret i32 1
}

define i32 @enter() {
  %r = call i32 @down(i32 5)
  ret i32 %r
}
