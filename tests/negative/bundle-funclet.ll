; A function that calls itself in a funclet is left alone: its call belongs to the funclet by a bundle.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3>' -pass-remarks-missed=inlinerecursion -S %s 2>&1 | FileCheck %s --implicit-check-not='f.recurse.clone' --implicit-check-not=inlinerecursion-protected --implicit-check-not=remark:

; CHECK: remark: <unknown>:0:0: 'f' not chained: a call of it carries an operand bundle
; CHECK: define internal {{.*}}@taken.recurse.clone(

define i32 @f(i32 %n) personality ptr @__CxxFrameHandler3 {
  invoke void @may_throw()
          to label %done unwind label %dispatch
done:
  ret i32 %n
dispatch:
  %switch = catchswitch within none [label %handler] unwind to caller
handler:
  %pad = catchpad within %switch [ptr null, i32 64, ptr null]
  %r = call i32 @f(i32 1) [ "funclet"(token %pad) ]
  catchret from %pad to label %done
}
declare void @may_throw()
declare i32 @__CxxFrameHandler3(...)
define i32 @taken(i32 %n) {
  %m = sub i32 %n, 1
  %r = call i32 @taken(i32 %m)
  ret i32 %r
}
