; A linker may give copies of one function a name that says they are another's: what the copies do, and not their names, says whose they are.
; RUN: %opt -passes=inlinerecursion -S -o %t.ring.ll < %s
; RUN: %opt -passes=inlinerecursion-ring-inlining -S < %t.ring.ll | FileCheck %s --check-prefix=ALIGNED
; RUN: sed '0,/i32 7/s//i32 8/' %t.ring.ll | %opt -passes=inlinerecursion-ring-inlining -S | FileCheck %s --implicit-check-not=recurse.entry
; RUN: sed '0,/add nsw/s//add/' %t.ring.ll | %opt -passes=inlinerecursion-ring-inlining -S | FileCheck %s --implicit-check-not=recurse.entry
; RUN: sed '0,/i32 %%n, 3/s//i32 3, %%n/' %t.ring.ll | %opt -passes=inlinerecursion-ring-inlining -S | FileCheck %s --implicit-check-not=recurse.entry
; RUN: sed '0,/label %%end, label %%on/s//label %%on, label %%end/' %t.ring.ll | %opt -passes=inlinerecursion-ring-inlining -S | FileCheck %s --implicit-check-not=recurse.entry
; RUN: sed '0,/\[ 0, %%0 \], \[ 1, %%on \]/s//[ 0, %%on ], [ 1, %%0 ]/' %t.ring.ll | %opt -passes=inlinerecursion-ring-inlining -S | FileCheck %s --implicit-check-not=recurse.entry

declare void @use(i32, i32)

; ALIGNED: define internal i32 @f.recurse.entry(
; CHECK: define internal i32 @f(
define internal i32 @f(i32 noundef %n) "specialize-inline-recursion-function" {
  %r = srem i32 %n, 3
  call void @use(i32 %r, i32 7)
  %done = icmp sgt i32 %n, 99
  br i1 %done, label %end, label %on
on:
  %m = add nsw i32 %n, 1
  %x = call i32 @f(i32 %m)
  br label %end
end:
  %which = phi i32 [ 0, %0 ], [ 1, %on ]
  ret i32 %which
}

; CHECK: call i32 @f.recurse.clone(i32 %n)
define i32 @caller(i32 %n) {
  %x = call i32 @f(i32 %n)
  ret i32 %x
}
