; Whatever is not a direct call keeps referring to the function: addresses, other types, aliases.
; RUN: %opt -passes='inlinerecursion<level=3>' -S %s | FileCheck %s --implicit-check-not='call{{ }}'

; CHECK: @table = global [2 x ptr] [ptr @f, ptr @caller]
@table = global [2 x ptr] [ptr @f, ptr @caller]
; CHECK: @alias = alias i32 (i32), ptr @f
@alias = alias i32 (i32), ptr @f

; CHECK-LABEL: define i32 @f(
; CHECK-NEXT:    %r = call i32 @f(i32 %n)
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(
; CHECK-NEXT:    store ptr @f, ptr @table
; CHECK-NEXT:    %p = load ptr, ptr @table
; CHECK-NEXT:    %pointer = call i32 %p(i32 %n)
; CHECK-NEXT:    %type = call i64 @f(i64 1)
; CHECK-NEXT:    %argument = call i32 @take(ptr @f)
; CHECK-NEXT:    %aliased = call i32 @alias(i32 %n)
; CHECK-NEXT:    %same = icmp eq ptr @f, %p
; CHECK-NEXT:    %direct = call i32 @f.recurse.clone(i32 %n)
define i32 @caller(i32 %n) {
  store ptr @f, ptr @table
  %p = load ptr, ptr @table
  %pointer = call i32 %p(i32 %n)
  %type = call i64 @f(i64 1)
  %argument = call i32 @take(ptr @f)
  %aliased = call i32 @alias(i32 %n)
  %same = icmp eq ptr @f, %p
  %direct = call i32 @f(i32 %n)
  ret i32 %direct
}

declare i32 @take(ptr)

; CHECK-LABEL: define internal i32 @f.recurse.clone(
; CHECK-NEXT:    %r = call i32 @f(i32 %n)
