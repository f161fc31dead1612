; A function that calls itself by musttail is left alone; tail alone is a hint.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: a call of it must be a tail call (musttail)
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) {
  %m = sub i32 %n, 1
  %r = musttail call i32 @f(i32 %m)
  ret i32 %r
}
define i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = tail call i32 @taken(i32 %m)
  ret i32 %r
}
