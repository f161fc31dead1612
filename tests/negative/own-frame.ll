; A function that is not to be inlined and asks for its frame, or for where it returns to, is left alone, also where its source asks for copies; one that may be inlined is not.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: it is not to be inlined (noinline), and asks for its frame or where it returns to
; CHECK: remark: <unknown>:0:0: 'g' not chained: it is not to be inlined (noinline), and asks for its frame or where it returns to
; CHECK: warning: <unknown>:0:0: the 3 copies that 'f' asks for are not built: it is not to be inlined (noinline), and asks for its frame or where it returns to
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) noinline "inlinerecursion-copies"="3" {
  %a = call ptr @llvm.returnaddress(i32 0)
  call void @use(ptr %a)
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
define i32 @g(i32 %n) noinline {
  %a = call ptr @llvm.frameaddress.p0(i32 0)
  call void @use(ptr %a)
  %m = sub i32 %n, 1
  %r = call i32 @g(i32 %m)
  ret i32 %r
}
define i32 @taken(i32 %n) {
  %a = call ptr @llvm.returnaddress(i32 0)
  call void @use(ptr %a)
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
declare ptr @llvm.returnaddress(i32)
declare ptr @llvm.frameaddress.p0(i32)
declare void @use(ptr)
