; A second run, right behind the first and behind the inliner, as at link time, builds no
; states again, and asks nobody to change a copy. The function that is left for unknown
; callers is one like others then.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s -o %t.1.ll
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %t.1.ll -o %t.2.ll 2>&1 | FileCheck %s --implicit-check-not=' states of' --implicit-check-not='remove noinline'
; RUN: %opt -passes='default<O2>' -S %s -o %t.3.ll
; RUN: FileCheck %s --check-prefix=INLINED --input-file %t.3.ll
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S %t.3.ll -o %t.4.ll 2>&1 | FileCheck %s --check-prefixes=CHECK,COPY --implicit-check-not=' states of' --implicit-check-not='remove noinline'
; RUN: FileCheck %s --check-prefix=INLINED --input-file %t.4.ll

; CHECK-DAG: 'walk' rebuilt as a ring
; COPY-DAG: 'walk.specialized.-1._' not chained: it is a copy for a state of its arguments
; INLINED: define internal fastcc void @walk.specialized.-1._(
; INLINED-NOT: define internal {{.*}}@walk.specialized

@g = external global i32

define void @walk(i1 %flag, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
  %kind = select i1 %flag, i32 7, i32 9
  %value = zext i1 %flag to i32
  %sum = add i32 %kind, %value
  store volatile i32 %sum, ptr @g
  %not = xor i1 %flag, true
  %first = load ptr, ptr %node
  call void @walk(i1 %not, ptr %first)
  store volatile i32 %value, ptr @g
  %at = getelementptr ptr, ptr %node, i64 1
  %second = load ptr, ptr %at
  call void @walk(i1 %not, ptr %second)
  store volatile i32 3, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @walk(i1 true, ptr %node)
  ret void
}
