; In a default pipeline the loops around links are marked, and recurrences over
; several of them are cut at the end; under the name of the pass alone, nothing
; of this happens.
; RUN: %opt -passes='default<O3>' -S %s | FileCheck %s
; RUN: %opt -load %plugin -inlinerecursion-cut-recurrences=0 -passes='default<O3>' -S %s | FileCheck %s --check-prefix=UNCUT
; RUN: %opt -passes='inlinerecursion' -S %s | FileCheck %s --check-prefix=ALONE

; CHECK-LABEL: define void @main(
; CHECK: freeze i32
; CHECK: !"llvm.loop.inlinerecursion.chain"
; UNCUT-LABEL: define void @main(
; UNCUT-NOT: freeze
; UNCUT: !"llvm.loop.inlinerecursion.chain"
; ALONE: define internal void @f.recurse.clone(
; ALONE-NOT: llvm.loop

@first = global i32 0
@limit = global i32 0
@count = global i32 0

; Each level begins where the level before it stands.
define internal void @f(i32 %level) {
  %leaf = icmp eq i32 %level, 3
  br i1 %leaf, label %hit, label %enter

hit:
  %c = load i32, ptr @count
  %c1 = add i32 %c, 1
  store volatile i32 %c1, ptr @count
  ret void

enter:
  %start = load i32, ptr @first
  %end = load i32, ptr @limit
  %any = icmp slt i32 %start, %end
  br i1 %any, label %loop, label %done

loop:
  %i = phi i32 [ %start, %enter ], [ %j, %loop ]
  store i32 %i, ptr @first
  %next = add i32 %level, 1
  call void @f(i32 %next)
  store i32 %start, ptr @first
  %j = add nsw i32 %i, 1
  %more = icmp slt i32 %j, %end
  br i1 %more, label %loop, label %done

done:
  ret void
}

define void @main() {
  call void @f(i32 0)
  ret void
}
