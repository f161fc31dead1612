; Copies that stand for one remainder each do not do what the function does any more; a second run, as at link time, takes them for no copies of it and leaves them alone.
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -S -o %t.once.ll < %s
; RUN: %opt -passes=inlinerecursion,inlinerecursion-ring-inlining -S -o %t.twice.ll < %t.once.ll
; RUN: diff %t.once.ll %t.twice.ll
; RUN: FileCheck %s --input-file %t.twice.ll

declare void @use(i32, i32)

; Of the remainder by 3, the copies for remainders by 4 know nothing.
; CHECK: call void @use(i32 0, i32 %third)
; CHECK: call void @use(i32 3, i32 %third)
define internal void @f(i32 noundef %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 4
  %third = srem i32 %n, 3
  call void @use(i32 %r, i32 %third)
  %done = icmp sgt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %m = add nsw i32 %n, 1
  call void @f(i32 %m)
  br label %end
end:
  ret void
}

define void @caller(i32 %n) {
  call void @f(i32 %n)
  ret void
}
