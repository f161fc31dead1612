// An annotation in C is a request, on definitions and on declarations ahead of them; the record of it stays as it is.
// RUN: %clang -I %S/../../include -O1 -Xclang -disable-llvm-passes -S -emit-llvm -o %t.ll %s
// RUN: %opt -passes='inlinerecursion-requests<no-find-requests>' -S %t.ll | FileCheck %s
// RUN: grep '^@llvm.global.annotations' %t.ll > %t.before
// RUN: %opt -passes='inlinerecursion-requests<no-find-requests>' -S %t.ll | grep '^@llvm.global.annotations' > %t.after
// RUN: diff %t.before %t.after
#include <inlinerecursion/request.h>

// CHECK: define {{.*}}i32 @requested({{.*}} [[REQUESTED:#[0-9]+]]
INLINERECURSION_SPECIALIZE
int requested(unsigned N) { return N ? requested(N - 1) : 0; }

INLINERECURSION_SPECIALIZE int declared(unsigned N);
// CHECK: define {{.*}}i32 @declared({{.*}} [[REQUESTED]]
int declared(unsigned N) { return N ? declared(N - 1) : 0; }

// CHECK: define {{.*}}i32 @plain({{.*}} [[PLAIN:#[0-9]+]]
int plain(unsigned N) { return N ? plain(N - 1) : 0; }

// CHECK: define internal {{.*}}i32 @local({{.*}} [[REQUESTED]]
INLINERECURSION_SPECIALIZE
static int local(unsigned N) { return N ? local(N - 1) : 0; }
int start(void) { return local(4); }

// CHECK: attributes [[REQUESTED]] = {{.*}} "specialize-inline-recursion-function"
// CHECK-NOT: attributes [[PLAIN]] = {{.*}}"specialize-inline-recursion-function"
