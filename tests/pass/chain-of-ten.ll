; A chain of ten: copy k calls copy k+1, the last one calls the function.
; RUN: %opt -passes='inlinerecursion<level=4>' -S %s | FileCheck %s --implicit-check-not=define --implicit-check-not='call{{ }}'

; CHECK-LABEL: define i32 @f(i32 %n)
; CHECK:         call i32 @f(i32 %m)
define i32 @f(i32 %n) {
entry:
  %done = icmp eq i32 %n, 0
  br i1 %done, label %base, label %rec
base:
  ret i32 1
rec:
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m)
  ret i32 %r
}

; CHECK-LABEL: define i32 @caller(i32 %n)
; CHECK:         call i32 @[[COPY0:f\.recurse\.clone]](i32 %n)
define i32 @caller(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}

; CHECK:       define internal i32 @[[COPY0]](i32 %n)
; CHECK:         call i32 @[[COPY1:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY1]](i32 %n)
; CHECK:         call i32 @[[COPY2:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY2]](i32 %n)
; CHECK:         call i32 @[[COPY3:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY3]](i32 %n)
; CHECK:         call i32 @[[COPY4:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY4]](i32 %n)
; CHECK:         call i32 @[[COPY5:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY5]](i32 %n)
; CHECK:         call i32 @[[COPY6:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY6]](i32 %n)
; CHECK:         call i32 @[[COPY7:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY7]](i32 %n)
; CHECK:         call i32 @[[COPY8:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY8]](i32 %n)
; CHECK:         call i32 @[[COPY9:f\.recurse\.clone\.[0-9]+]](i32 %m)
; CHECK:       define internal i32 @[[COPY9]](i32 %n)
; CHECK:         call i32 @f(i32 %m)
; CHECK-NOT:   recurse.clone{{[.(]}}
