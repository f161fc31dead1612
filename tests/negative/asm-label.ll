; A function whose inline assembly defines a symbol is left alone; numbered and unique labels may be repeated.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: inline assembly in it defines a symbol
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) {
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  call void asm sideeffect "nop; here : nop", ""()
  ret i32 %r
}
define i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  call void asm sideeffect "1: movq %fs:8, %rax\0A.Lhere${:uid}: jmp 1b", ""()
  ret i32 %r
}
