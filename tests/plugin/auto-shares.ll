; What a module may grow by is shared out: two rings of five copies do not fit, and neither function takes what the other one needs.
; RUN: %opt -passes='inlinerecursion-pipeline<module-growth=300>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=FITS
; RUN: %opt -passes='inlinerecursion-pipeline<module-growth=160>' -pass-remarks=inlinerecursion -disable-output %s 2>&1 | FileCheck %s --check-prefix=SHARED

; FITS: 'first' rebuilt as a ring of 5 copies {{.*}} growing by about 147 instructions
; FITS: 'second' rebuilt as a ring of 5 copies {{.*}} growing by about 147 instructions
; SHARED: 'first' rebuilt as a ring of 3 copies {{.*}} growing by about 51 instructions
; SHARED: 'second' rebuilt as a ring of 4 copies {{.*}} growing by about 87 instructions

@g = external global i32

define void @first(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @first(i32 %m)
  store i32 %n, ptr @g
  call void @first(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}

define void @second(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = lshr i32 %n, 1
  call void @second(i32 %m)
  store i32 %n, ptr @g
  call void @second(i32 %m)
  store i32 %m, ptr @g
  br label %exit
exit:
  ret void
}
