; A function that jumps through a static table of its labels is left alone.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: the address of one of its labels is taken
; CHECK: define internal {{.*}}@taken.recurse.clone(

@table = internal constant [2 x ptr] [ptr blockaddress(@f, %even), ptr blockaddress(@f, %odd)]
define i32 @f(i32 %n) {
  %bit = and i32 %n, 1
  %slot = getelementptr [2 x ptr], ptr @table, i32 0, i32 %bit
  %label = load ptr, ptr %slot
  indirectbr ptr %label, [label %even, label %odd]
even:
  %r = call i32 @f(i32 %bit)
  ret i32 %r
odd:
  ret i32 1
}
define i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
