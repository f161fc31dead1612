; A function whose calling convention promises tail calls is left alone; fast calls promise nothing.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: its calling convention promises tail calls
; CHECK: define internal {{.*}}@taken.recurse.clone(

define tailcc i32 @f(i32 %n) {
  %m = sub i32 %n, 1
  %r = tail call tailcc i32 @f(i32 %m)
  ret i32 %r
}
define fastcc i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = tail call fastcc i32 @taken(i32 %m)
  ret i32 %r
}
