// An annotation in C++ is a request, on functions in namespaces, members of every kind and templates.
// RUN: %clangxx -std=c++17 -I %S/../../include -O1 -Xclang -disable-llvm-passes -S -emit-llvm -o - %s | %opt -passes='inlinerecursion-requests<no-find-requests>' -S - | FileCheck %s --allow-deprecated-dag-overlap
// RUN: %clangxx -std=c++17 -I %S/../../include -O1 -Xclang -disable-llvm-passes -S -emit-llvm -o - %s | %opt -passes='inlinerecursion-requests<no-find-requests>' -S - | FileCheck %s --check-prefix=PLAIN
#include <inlinerecursion/request.h>

namespace space {
INLINERECURSION_SPECIALIZE
int inNamespace(unsigned N) { return N ? inNamespace(N - 1) : 0; }
} // namespace space

struct Base {
  INLINERECURSION_SPECIALIZE int member(unsigned N);
  INLINERECURSION_SPECIALIZE static int ofClass(unsigned N) {
    return N ? ofClass(N - 1) : 0;
  }
  INLINERECURSION_SPECIALIZE virtual int dispatched(unsigned N) {
    return N ? Base::dispatched(N - 1) : 0;
  }
  INLINERECURSION_SPECIALIZE int operator()(unsigned N) const {
    return N ? (*this)(N - 1) : 0;
  }
};

int Base::member(unsigned N) { return N ? member(N - 1) : 0; }

template <typename T> INLINERECURSION_SPECIALIZE T instance(T N) {
  return N ? instance<T>(N - 1) : 0;
}

template <typename T> struct Holder {
  INLINERECURSION_SPECIALIZE T held(T N) { return N ? held(N - 1) : 0; }
};

inline INLINERECURSION_SPECIALIZE int inLine(unsigned N) {
  return N ? inLine(N - 1) : 0;
}

int noRequest(unsigned N) { return N ? noRequest(N - 1) : 0; }

int start(unsigned N) {
  Base B;
  return space::inNamespace(N) + B.member(N) + Base::ofClass(N) + B(N) +
         instance<int>(1) + instance<unsigned long>(2) +
         Holder<short>().held(3) + inLine(4) + noRequest(5);
}

// CHECK-DAG: define {{.*}} @_ZN5space11inNamespaceEj({{.*}} [[FREE:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_ZN4Base6memberEj({{.*}} [[MEMBER:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_ZN4Base7ofClassEj({{.*}} [[INLINE:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_ZN4Base10dispatchedEj({{.*}} [[VIRTUAL:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_ZNK4BaseclEj({{.*}} [[CALL:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_Z8instanceIiET_S0_({{.*}} [[INT:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_Z8instanceImET_S0_({{.*}} [[LONG:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_ZN6HolderIsE4heldEs({{.*}} [[HELD:#[0-9]+]]
// CHECK-DAG: define {{.*}} @_Z6inLinej({{.*}} [[LINE:#[0-9]+]]
// CHECK-DAG: attributes [[FREE]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[MEMBER]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[INLINE]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[VIRTUAL]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[CALL]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[INT]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[LONG]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[HELD]] = {{.*}}"specialize-inline-recursion-function"
// CHECK-DAG: attributes [[LINE]] = {{.*}}"specialize-inline-recursion-function"

// PLAIN: define {{.*}} @_Z9noRequestj({{.*}} [[PLAIN:#[0-9]+]]
// PLAIN-NOT: attributes [[PLAIN]] = {{.*}}"specialize-inline-recursion-function"
