; In a function that everything is to be inlined into (flatten), each call is marked
; so.  The calls between copies are not any more: with two in each copy, the code
; would double from state to state.
; RUN: %opt -passes=inlinerecursion-auto -S %s | FileCheck %s

; CHECK-LABEL: define internal i32 @walk.specialized.0._(
; CHECK: call i32 @walk.specialized.1._(i32 1, i32 %{{[a-z]+}}){{$}}
; CHECK: call i32 @walk.specialized.1._(i32 1, i32 %{{[a-z]+}}){{$}}
; CHECK: call i32 @other(i32 %{{[a-z]+}}) [[MARK:#[0-9]+]]
; CHECK: attributes [[MARK]] = { alwaysinline }

@seen = global [8 x i32] zeroinitializer

declare i32 @other(i32)

define internal i32 @walk(i32 %row, i32 %x) {
  %stop = icmp eq i32 %row, 6
  br i1 %stop, label %end, label %more
more:
  %next = add i32 %row, 1
  %odd = and i32 %row, 1
  %scaled = mul i32 %odd, 12
  %twice = shl i32 %row, 1
  %sum = add i32 %scaled, %twice
  %place = getelementptr i32, ptr @seen, i32 %row
  %old = load i32, ptr %place
  %y = xor i32 %x, %old
  %z = add i32 %y, %sum
  %a = call i32 @walk(i32 %next, i32 %y) #0
  store i32 %a, ptr %place
  %b = call i32 @walk(i32 %next, i32 %z) #0
  %c = call i32 @other(i32 %b) #0
  %r = add i32 %a, %c
  ret i32 %r
end:
  ret i32 %x
}

define i32 @enter(i32 %x) {
  %r = call i32 @walk(i32 0, i32 %x)
  ret i32 %r
}

attributes #0 = { alwaysinline }
