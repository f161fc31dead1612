; With -inlinerecursion-lto=link, a ring of a function that other files may call is left to the linker: in a compile step, which clang marks by flags of the module, and once.
; RUN: %opt -load %plugin -inlinerecursion-lto=link -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefixes=LEFT,CHECK
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefixes=BUILT,CHECK
; RUN: sed 's/"ThinLTO"/"OtherFlag"/' %s | %opt -load %plugin -inlinerecursion-lto=link -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output - 2>&1 | FileCheck %s --check-prefixes=BUILT,CHECK
; RUN: sed 's/"ThinLTO"/"EnableSplitLTOUnit"/' %s | %opt -load %plugin -inlinerecursion-lto=link -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -disable-output - 2>&1 | FileCheck %s --check-prefixes=LEFT,CHECK
; RUN: %opt -load %plugin -inlinerecursion-lto=link -passes='default<O3>' -pass-remarks=inlinerecursion -S %s 2>&1 | FileCheck %s --check-prefix=MARKED
; RUN: %opt -load %plugin -inlinerecursion-lto=link -passes='default<O3>' -S %s -o %t.ll
; RUN: %opt -load %plugin -inlinerecursion-lto=link -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output %t.ll 2>&1 | FileCheck %s --check-prefix=BACKEND

; LEFT: 'seen' not chained: a ring of it is left to the linker, which sees all calls of it
; BUILT: 'seen' rebuilt as a ring
; CHECK: 'local' rebuilt as a ring
; CHECK: 'fib' rebuilt as a ring of {{[2-9]}} copies by the automatic policy, so that equal calls merge

; MARKED-NOT: 'seen' rebuilt
; MARKED: !{i32 7, !"inlinerecursion-left-to-link", i32 1}
; BACKEND: 'seen' rebuilt as a ring

@g = external global i32

define void @seen(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @seen(i32 %m)
  store volatile i32 %n, ptr @g
  call void @seen(i32 %m)
  store volatile i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define internal void @local(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @local(i32 %m)
  store volatile i32 %n, ptr @g
  call void @local(i32 %m)
  store volatile i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(i32 %n) {
  call void @local(i32 %n)
  ret void
}

define i32 @fib(i32 %n) {
entry:
  %small = icmp slt i32 %n, 2
  br i1 %small, label %base, label %rec
base:
  ret i32 %n
rec:
  %m = sub i32 %n, 1
  %a = call i32 @fib(i32 %m)
  %k = sub i32 %n, 2
  %b = call i32 @fib(i32 %k)
  %s = add i32 %a, %b
  ret i32 %s
}

!llvm.module.flags = !{!0}
!0 = !{i32 1, !"ThinLTO", i32 0}
