; A copy is not forced into a caller that the inliner would keep apart from it: other target features, another sanitizer.
; RUN: %opt -passes='inlinerecursion-pipeline<level=4>' -maximum-clone-limit-inline-recursion=30 -S %s | FileCheck %s
; RUN: %opt -passes='default<O2>' -inline-recursion-opt-level=4 -maximum-clone-limit-inline-recursion=30 -S %s | FileCheck %s --check-prefix=INLINED
target triple = "x86_64-unknown-linux-gnu"

declare void @work()

define void @features(i32 %n) "target-features"="+avx2" {
  call void @work()
  call void @features(i32 %n)
  ret void
}
; CHECK-LABEL: define void @same_features(
; CHECK: call void @features.recurse.clone(i32 %n){{$}}
; INLINED-LABEL: define void @same_features(
; INLINED-NOT: call {{.*}}recurse.clone
define void @same_features(i32 %n) "target-features"="+avx2" {
  call void @features(i32 %n)
  ret void
}

; CHECK-LABEL: define void @fewer_features(
; CHECK: call void @wide.recurse.clone(i32 %n) #[[NOINLINE:[0-9]+]]
; INLINED-LABEL: define void @fewer_features(
; INLINED: call {{.*}}@wide.recurse.clone(
define void @fewer_features(i32 %n) {
  call void @wide(i32 %n)
  ret void
}
define void @wide(i32 %n) "target-features"="+avx2" {
  call void @work()
  call void @wide(i32 %n)
  ret void
}

; CHECK-LABEL: define void @sanitized(
; CHECK: call void @plain.recurse.clone(i32 %n) #[[NOINLINE]]
; INLINED-LABEL: define void @sanitized(
; INLINED: call {{.*}}@plain.recurse.clone(
define void @sanitized(i32 %n) sanitize_address {
  call void @plain(i32 %n)
  ret void
}
define void @plain(i32 %n) {
  call void @work()
  call void @plain(i32 %n)
  ret void
}
; CHECK: attributes #[[NOINLINE]] = { noinline }
