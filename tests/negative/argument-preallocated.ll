; A function whose preallocated argument is tied to its call is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: an argument is tied to its call (inalloca, preallocated or swifterror)
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n, ptr preallocated(i32) %p) {
  %m = sub i32 %n, 1
  %setup = call token @llvm.call.preallocated.setup(i32 1)
  %q = call ptr @llvm.call.preallocated.arg(token %setup, i32 0) preallocated(i32)
  %r = call i32 @f(i32 %m, ptr preallocated(i32) %q) [ "preallocated"(token %setup) ]
  ret i32 %r
}
define i32 @taken(i32 %n, ptr %p) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m, ptr %p)
  ret i32 %r
}
declare token @llvm.call.preallocated.setup(i32)
declare ptr @llvm.call.preallocated.arg(token, i32)
