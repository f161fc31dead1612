; Copies with more than 256 bytes of variables in memory stay functions of their own, one
; that needs none of these variables is inlined as small copies are.
; RUN: %opt -passes='inlinerecursion-pipeline' -S %s | FileCheck %s
; RUN: %opt -passes='inlinerecursion-auto<copies=0>' -inlinerecursion-max-frame-size=300 -S %s | FileCheck %s --check-prefix=SMALL

; CHECK: define internal void @f.specialized.0._({{.*}} [[APART:#[0-9]+]]
; CHECK-NEXT: entry:
; CHECK-NEXT: alloca [300 x i8]
; CHECK: define internal void @f.specialized.1._({{.*}} [[APART]]
; CHECK-NEXT: entry:
; CHECK-NEXT: alloca [300 x i8]
; CHECK: define internal void @f.specialized.2._({{.*}} [[INLINED:#[0-9]+]]
; CHECK-NOT: alloca
; CHECK: define internal void @same.specialized.7._({{.*}} [[APART]]
; CHECK: attributes [[APART]] = { noinline
; CHECK: attributes [[INLINED]] = { alwaysinline

; SMALL: define internal void @f.specialized.1._({{.*}} [[INLINED:#[0-9]+]]
; SMALL: attributes [[INLINED]] = { alwaysinline

@g = external global i32
declare void @use(ptr)
declare void @llvm.lifetime.start.p0(i64, ptr)
declare void @llvm.lifetime.end.p0(i64, ptr)

define void @f(i32 %n, ptr %node) {
entry:
  %x = alloca [300 x i8]
  call void @llvm.lifetime.start.p0(i64 300, ptr %x)
  %last = icmp eq i32 %n, 2
  br i1 %last, label %exit, label %rec
rec:
  call void @use(ptr %x)
  %a = mul i32 %n, 7
  %b = xor i32 %a, 5
  %c = udiv i32 %b, 3
  store volatile i32 %c, ptr @g
  %m = add i32 %n, 1
  %next = load ptr, ptr %node
  call void @f(i32 %m, ptr %next)
  store volatile i32 %a, ptr @g
  br label %exit
exit:
  store volatile i32 %n, ptr @g
  call void @llvm.lifetime.end.p0(i64 300, ptr %x)
  ret void
}

; One that calls itself.
define void @same(i32 %n, ptr %node) {
entry:
  %x = alloca [300 x i8]
  %last = icmp eq ptr %node, null
  br i1 %last, label %exit, label %rec
rec:
  call void @use(ptr %x)
  %a = mul i32 %n, 7
  %b = xor i32 %a, 5
  %c = udiv i32 %b, 3
  store volatile i32 %c, ptr @g
  %next = load ptr, ptr %node
  call void @same(i32 %n, ptr %next)
  store volatile i32 %a, ptr @g
  br label %exit
exit:
  ret void
}

define void @enter(ptr %node) {
  call void @f(i32 0, ptr %node)
  call void @same(i32 7, ptr %node)
  ret void
}
