// Entries name functions as the linker does or as the source does, with parameters where several have the name; local functions are told apart by their files.
// RUN: split-file %s %t
// RUN: cd %t && %clangxx -fpass-plugin=%plugin -Xclang -load -Xclang %plugin -O3 -mllvm -inlinerecursion-plan=names.plan -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -c -o /dev/null names.cpp 2>&1 | FileCheck names.cpp --implicit-check-not=warning:
// RUN: cd %t && %clangxx -fpass-plugin=%plugin -Xclang -load -Xclang %plugin -O3 -mllvm -inlinerecursion-plan=names.plan -Rpass=inlinerecursion -fno-caret-diagnostics -c -o /dev/null other/names.cpp 2>&1 | FileCheck other/names.cpp --implicit-check-not=warning:

//--- names.cpp
// CHECK-DAG: warning: InlineRecursion: names.plan:7: the plan for 'same' does not count: 2 functions have that name; write it with its parameters, or as the linker knows it
int same(int N) { return N < 2 ? N : same(N - 1) + same(N - 2); }
long same(long N) { return N < 2 ? N : same(N - 1) + same(N - 2); }
namespace tree {
// CHECK-DAG: '_ZN4tree4growEi' not chained: its plan leaves it as it is
int grow(int N) { return N < 2 ? N : grow(N - 1) + grow(N - 2); }
// CHECK-DAG: '_ZN4tree4growEl' rebuilt as a ring of 3 copies {{.*}} as planned
long grow(long N) { return N < 2 ? N : grow(N - 1) + grow(N - 2); }
}
// CHECK-DAG: '_ZN12_GLOBAL__N_15localEi' rebuilt as a ring of 4 copies {{.*}} as planned
namespace {
int local(int N) { return N < 2 ? N : local(N - 1) + local(N - 2); }
}
// CHECK-DAG: '_Z5twiceIlET_S0_' rebuilt as a ring of 5 copies {{.*}} as planned
template <typename T> T twice(T N) { return N < 2 ? N : twice(N - 1) + twice(N - 2); }
int enter(int N) { return local(N) + twice(long(N)); }

//--- other/names.cpp
// CHECK: '_ZN12_GLOBAL__N_15localEi' rebuilt as a ring of 3 copies {{.*}} as planned
namespace {
int local(int N) { return N < 2 ? N : local(N - 1) + local(N - 2); }
}
int enter(int N) { return local(N); }

//--- names.plan
---
version: 1
functions:
  - {name: 'tree::grow(int)', plan: none}
  - {name: 'tree::grow', plan: ring copies=3}
  - {name: _Z5twiceIlET_S0_, plan: ring copies=5}
  - {name: same, plan: none}
  - {name: '(anonymous namespace)::local', plan: ring copies=4, file: names.cpp}
  - {name: '(anonymous namespace)::local', plan: ring copies=3, file: other/names.cpp}
...
