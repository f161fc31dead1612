; A function whose local variables are found by other functions is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: other functions reach its local variables (localescape)
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) {
  %x = alloca i32
  call void (...) @llvm.localescape(ptr %x)
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
declare void @llvm.localescape(...)
define i32 @taken(i32 %n) {
  %x = alloca i32
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
