; A function with more than 256 bytes of local variables in memory is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3;no-auto>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: its local variables take more stack than inlinerecursion-max-frame-size allows
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) {
  %x = alloca [200 x i8]
  %y = alloca [57 x i8]
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
define i32 @taken(i32 %n) {
  %x = alloca [200 x i8]
  %y = alloca [56 x i8]
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
