; A function whose caller alone states how its argument is aligned is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: a call aligns an argument in memory more than the function asks for
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(ptr byval(i32) %p) {
  %r = call i32 @f(ptr byval(i32) align 32 %p)
  ret i32 %r
}
define i32 @taken(ptr byval(i32) align 32 %p) {
  %r = call i32 @taken(ptr byval(i32) align 32 %p)
  ret i32 %r
}
