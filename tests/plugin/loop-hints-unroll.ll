; Loops of known trip count in marked functions are to be unrolled, within the
; limit, whatever else leaves them; other loops are left alone.
; RUN: %opt -passes='loop(inlinerecursion-loop-hints)' -S %s | FileCheck %s
; RUN: %opt -load %plugin -inlinerecursion-unroll-limit=0 -passes='loop(inlinerecursion-loop-hints)' -S %s | FileCheck %s --check-prefix=OFF

; CHECK-LABEL: define void @seven_trips(
; CHECK: br i1 %last, label %done, label %loop, !llvm.loop [[FULL:![0-9]+]]
; OFF-LABEL: define void @seven_trips(
; OFF: br i1 %last, label %done, label %loop{{$}}
define void @seven_trips(ptr %p) "llvm.recurse.clone" {
  br label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  store volatile i32 %i, ptr %p
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 7
  br i1 %last, label %done, label %loop

done:
  ret void
}

; Seven trips at most.
; CHECK-LABEL: define void @left_early(
; CHECK: br i1 %last, label %done, label %loop, !llvm.loop [[EARLY:![0-9]+]]
define void @left_early(ptr %p) "llvm.recurse.clone" {
  br label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %latch ]
  %enough = load volatile i1, ptr %p
  br i1 %enough, label %done, label %latch

latch:
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 7
  br i1 %last, label %done, label %loop

done:
  ret void
}

; Five instructions a thousand times are too many.
; CHECK-LABEL: define void @thousand_trips(
; CHECK: br i1 %last, label %done, label %loop{{$}}
define void @thousand_trips(ptr %p) "llvm.recurse.clone" {
  br label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  store volatile i32 %i, ptr %p
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 1000
  br i1 %last, label %done, label %loop

done:
  ret void
}

; CHECK-LABEL: define void @unmarked(
; CHECK: br i1 %last, label %done, label %loop{{$}}
define void @unmarked(ptr %p) {
  br label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  store volatile i32 %i, ptr %p
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, 7
  br i1 %last, label %done, label %loop

done:
  ret void
}

; A loop that was around a link, of unknown trip count: not to be vectorized.
; CHECK-LABEL: define void @around_a_link(
; CHECK: br i1 %last, label %done, label %loop, !llvm.loop [[CHAIN:![0-9]+]]
define void @around_a_link(ptr %p, i32 %n) {
  br label %loop

loop:
  %i = phi i32 [ 0, %0 ], [ %j, %loop ]
  store volatile i32 %i, ptr %p
  %j = add nuw nsw i32 %i, 1
  %last = icmp eq i32 %j, %n
  br i1 %last, label %done, label %loop, !llvm.loop !0

done:
  ret void
}

!0 = distinct !{!0, !1}
!1 = !{!"llvm.loop.inlinerecursion.chain", i32 1}

; CHECK-DAG: [[FULL]] = distinct !{[[FULL]], [[UNROLL:![0-9]+]]}
; CHECK-DAG: [[EARLY]] = distinct !{[[EARLY]], [[UNROLL]]}
; CHECK-DAG: [[UNROLL]] = !{!"llvm.loop.unroll.full", i32 1}
; CHECK-DAG: [[CHAIN]] = distinct !{[[CHAIN]], {{.*}}[[SCALAR:![0-9]+]]}
; CHECK-DAG: [[SCALAR]] = !{!"llvm.loop.vectorize.enable", i32 0}
