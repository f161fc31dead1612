; A local function of a comdat group is left alone: the copies stand outside, where they must not refer to it.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: it is local to a comdat group, which the linker may discard
; CHECK: define internal {{.*}}@taken.recurse.clone(

$group = comdat any
$taken = comdat any
define internal i32 @f(i32 %n) comdat($group) {
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
define linkonce_odr i32 @group(i32 %n) comdat {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
define linkonce_odr i32 @taken(i32 %n) comdat {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
