; PHIs, stores, switches and unreachables are instructions like any other: there are 20, and EXTRA is one too many.
; RUN: sed 's/EXTRA//' %s | %opt -passes='inlinerecursion<level=1>' -S | FileCheck %s --check-prefix=CHAINED
; RUN: sed 's/EXTRA/fence seq_cst/' %s | %opt -passes='inlinerecursion<level=1>' -S | FileCheck %s --check-prefix=REFUSED --implicit-check-not=recurse.clone

; CHAINED: define internal i32 @f.recurse.clone(
; REFUSED: define i32 @f(
define i32 @f(i32 %n) {
entry:
  %slot = alloca i32
  store i32 %n, ptr %slot
  switch i32 %n, label %rec [ i32 0, label %base
                              i32 1, label %never ]
base:
  ret i32 1
never:
  unreachable
rec:
  %loaded = load i32, ptr %slot
  %odd = trunc i32 %loaded to i1
  br i1 %odd, label %left, label %right
left:
  %l = add i32 %n, 1
  br label %join
right:
  %r = sub i32 %n, 1
  br label %join
join:
  %x = phi i32 [ %l, %left ], [ %r, %right ]
  %y = phi i32 [ 1, %left ], [ 2, %right ]
  %z = select i1 %odd, i32 %x, i32 %y
  %p = getelementptr i32, ptr %slot, i32 0
  %frozen = freeze i32 %z
  %result = call i32 @f(i32 %frozen)
  EXTRA
  %last = xor i32 %result, %n
  ret i32 %last
}
