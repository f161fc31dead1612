; A function whose swifterror argument is tied to its call is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: an argument is tied to its call (inalloca, preallocated or swifterror)
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n, ptr swifterror %p) {
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m, ptr swifterror %p)
  ret i32 %r
}
define i32 @taken(i32 %n, ptr %p) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m, ptr %p)
  ret i32 %r
}
