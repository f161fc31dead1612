; What is found does not depend on the order in which the uses of the function happen to
; stand, which differs between ways to make the same module.
; RUN: rm -rf %t && mkdir %t && cp %s %t/first.ll && cp %s %t/second.ll
; RUN: echo "uselistorder ptr @f, { 1, 2, 3, 0 }" >> %t/first.ll
; RUN: echo "uselistorder ptr @f, { 1, 0, 3, 2 }" >> %t/second.ll
; RUN: %opt -passes='inlinerecursion-pipeline<state-growth=100000>' -pass-remarks=inlinerecursion -S %t/first.ll -o %t/first.out 2> %t/first.remarks
; RUN: %opt -passes='inlinerecursion-pipeline<state-growth=100000>' -pass-remarks=inlinerecursion -S %t/second.ll -o %t/second.out 2> %t/second.remarks
; RUN: FileCheck %s --input-file=%t/first.remarks
; RUN: diff %t/first.remarks %t/second.remarks
; RUN: sed "s/second.ll/first.ll/" %t/second.out | diff %t/first.out -

; The second entry alone would lead to too many states.
; CHECK: 'f' rebuilt for 201 states of 'n' (0 to 200)

@g = external global i32

define i32 @f(i32 %n, i32 %k) {
  %stop = icmp eq i32 %n, 200
  br i1 %stop, label %end, label %rec
rec:
  %a = mul i32 %n, 3
  %b = xor i32 %a, 9
  store volatile i32 %b, ptr @g
  %m = add i32 %n, 1
  %l = load volatile i32, ptr @g
  %q = call i32 @f(i32 %m, i32 %l)
  store volatile i32 %a, ptr @g
  %r = call i32 @f(i32 %m, i32 %q)
  %s = add i32 %r, %n
  ret i32 %s
end:
  ret i32 %k
}

define i32 @main(i32 %x) {
  %a = call i32 @f(i32 100, i32 %x)
  ret i32 %a
}

define i32 @other(i32 %x) {
  %a = call i32 @f(i32 0, i32 %x)
  ret i32 %a
}

