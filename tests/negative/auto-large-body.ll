; A function of many instructions makes no ring: calls are a small part of its time.
; RUN: %python -c "import sys; t = open(sys.argv[1]).read(); s = '  store i32 %%n, ptr @g\n'; print(t.replace(s, s * 90))" %s | %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S - 2>&1 | FileCheck %s --implicit-check-not='@f.recurse'
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=TAKEN

; CHECK: 'f' not chained: its {{[0-9]+}} instructions, more than 80, take the time, not its self calls
; TAKEN: 'f' rebuilt as a ring

@g = external global i32

define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  store i32 %n, ptr @g
  call void @f(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
