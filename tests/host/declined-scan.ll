; A call made in some trips only, in a loop whose remainders by the number of the
; trip fold once it is unrolled: left alone.  Made in every trip, it is chained.
; RUN: %opt -passes=inlinerecursion -S %s | FileCheck %s
; RUN: sed 's/br i1 %%odd, label %%call, label %%latch/br label %%call/' %s | %opt -passes=inlinerecursion -S - | FileCheck %s --check-prefix=ALWAYS

; CHECK-NOT: recurse.clone
; ALWAYS: define internal void @f.recurse.clone(

@g = global i32 0

define internal void @f(i32 %n) {
  %stop = icmp eq i32 %n, 4
  br i1 %stop, label %leaf, label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %latch ]
  %v = load i32, ptr @g
  %odd = trunc i32 %v to i1
  %d = add i32 %i, 3
  %q = urem i32 %v, %d
  store i32 %q, ptr @g
  br i1 %odd, label %call, label %latch

call:
  %next = add i32 %n, 1
  call void @f(i32 %next)
  br label %latch

latch:
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 7
  br i1 %last, label %leaf, label %loop

leaf:
  ret void
}

define void @main() {
  call void @f(i32 0)
  ret void
}
