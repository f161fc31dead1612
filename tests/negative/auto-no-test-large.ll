; Without a test at its entry, a function makes a ring only if it is small: its calls have
; a test each, and the copies that are entered for nothing have to be cheap.
; RUN: %python -c "import sys; t = open(sys.argv[1]).read(); s = '  store i32 %%n, ptr @g\n'; print(t.replace(s, s * 60))" %s | %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -pass-remarks-missed=inlinerecursion -S - 2>&1 | FileCheck %s --implicit-check-not='@f.recurse'
; RUN: %opt -passes='inlinerecursion-pipeline' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=TAKEN

; CHECK: 'f' not chained: no test stands at its entry, and it has {{[0-9]+}} instructions, more than 60
; TAKEN: 'f' rebuilt as a ring

@g = external global i32

define void @f(ptr %p) {
entry:
  %n = load volatile i32, ptr %p
  store i32 %n, ptr @g
  %left = icmp ult i32 %n, 10
  br i1 %left, label %one, label %between
one:
  %q = getelementptr ptr, ptr %p, i64 1
  call void @f(ptr %q)
  br label %between
between:
  %m = load volatile i32, ptr %p
  %right = icmp ult i32 %m, 20
  br i1 %right, label %two, label %exit
two:
  %r = getelementptr ptr, ptr %p, i64 2
  call void @f(ptr %r)
  %v = load volatile i32, ptr %p
  br label %exit
exit:
  ret void
}
