; A function with data in front of its code is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: data stands in front of its code or at its entry
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) prefix i32 1 {
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
define i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
