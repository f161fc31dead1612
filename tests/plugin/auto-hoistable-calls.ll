; A call of a function that only reads is left without the test in front of it
; where a loop hands it the same arguments in every trip: at -O2, what stands
; behind a test is not moved out of a loop.
; RUN: %opt -passes='inlinerecursion-auto<copies=3>' -S %s | FileCheck %s
; RUN: %opt -O2 -S %s | FileCheck %s --check-prefix=O2

@g = external global i32
@tree = external global ptr

; A tree with two sons and a mark.
define internal i1 @any(ptr readonly %t) {
entry:
  %none = icmp eq ptr %t, null
  br i1 %none, label %exit, label %rec
rec:
  %right.at = getelementptr ptr, ptr %t, i64 1
  %left = load ptr, ptr %t
  %right = load ptr, ptr %right.at
  %mark.at = getelementptr ptr, ptr %t, i64 2
  %mark = load i1, ptr %mark.at
  %in.left = call i1 @any(ptr %left)
  %in.right = call i1 @any(ptr %right)
  %sons = xor i1 %in.left, %in.right
  %all = icmp ugt i1 %sons, %mark
  br label %exit
exit:
  %result = phi i1 [ false, %entry ], [ %all, %rec ]
  ret i1 %result
}

define internal void @clear(ptr %t) {
entry:
  %none = icmp eq ptr %t, null
  br i1 %none, label %exit, label %rec
rec:
  %right.at = getelementptr ptr, ptr %t, i64 1
  %left = load ptr, ptr %t
  %right = load ptr, ptr %right.at
  call void @clear(ptr %left)
  store ptr null, ptr %t
  call void @clear(ptr %right)
  store ptr null, ptr %right.at
  br label %exit
exit:
  ret void
}

; Its sum is handed on; what begins it is called.
define internal i32 @count(ptr %t) {
entry:
  %none = icmp eq ptr %t, null
  br i1 %none, label %exit, label %rec
rec:
  %right.at = getelementptr ptr, ptr %t, i64 1
  %left = load ptr, ptr %t
  %right = load ptr, ptr %right.at
  %a = call i32 @count(ptr %left)
  %b = call i32 @count(ptr %right)
  %sons = add i32 %a, %b
  %all = add i32 %sons, 1
  br label %exit
exit:
  %result = phi i32 [ 0, %entry ], [ %all, %rec ]
  ret i32 %result
}

; CHECK-LABEL: define void @same_arguments(
; CHECK: call i1 @any({{.*}}) #[[NOINLINE:[0-9]+]]
; CHECK: call i32 @count({{.*}}) #[[NOINLINE]]
; CHECK: call void @clear(ptr %t){{$}}
define void @same_arguments(ptr %t, i32 %n) {
entry:
  br label %trip
trip:
  %i = phi i32 [ 0, %entry ], [ %next, %trip ]
  %root = load ptr, ptr @tree
  %b = call i1 @any(ptr %root)
  %c = call i32 @count(ptr %t)
  call void @clear(ptr %t)
  %next = add i32 %i, 1
  %more = icmp ult i32 %next, %n
  br i1 %more, label %trip, label %done
done:
  ret void
}

; CHECK-LABEL: define i1 @others(
; CHECK: call i1 @any(ptr %a){{$}}
; CHECK: call i1 @any(ptr %each){{$}}
define i1 @others(ptr %a) {
entry:
  %first = call i1 @any(ptr %a)
  br label %trip
trip:
  %each = phi ptr [ %a, %entry ], [ %next, %trip ]
  %b = call i1 @any(ptr %each)
  %next = getelementptr ptr, ptr %each, i64 1
  br i1 %b, label %trip, label %done
done:
  ret i1 %first
}

; CHECK: attributes #[[NOINLINE]] = { noinline }

; O2-LABEL: define i32 @made_once(
; O2: call {{.*}} @count
; O2: trip:
; O2-NOT: @count
; O2: ret i32
define i32 @made_once(ptr %t, ptr %p, i32 %n) {
entry:
  br label %trip
trip:
  %i = phi i32 [ 0, %entry ], [ %next, %trip ]
  %s = phi i32 [ 0, %entry ], [ %sum, %trip ]
  %c = call i32 @count(ptr %t)
  %at = getelementptr i32, ptr %p, i32 %i
  %v = load i32, ptr %at
  %v.c = mul i32 %v, %c
  %sum = add i32 %s, %v.c
  %next = add i32 %i, 1
  %more = icmp ult i32 %next, %n
  br i1 %more, label %trip, label %done
done:
  ret i32 %sum
}
