// A function that is looked at behind the inliner has its plan there; one that was refused before may be given one there.
// RUN: split-file %s %t
// RUN: cd %t && %clangxx -fpass-plugin=%plugin -Xclang -load -Xclang %plugin -O3 -mllvm -inlinerecursion-plan=late.plan -Rpass=inlinerecursion -Rpass-missed=inlinerecursion -fno-caret-diagnostics -c -o /dev/null late.cpp 2>&1 | FileCheck late.cpp --implicit-check-not=warning:

//--- late.cpp
#include <memory>
struct Node {
  std::unique_ptr<Node> Left, Right;
};
// The destructor calls itself once its parts are inlined.
// CHECK-DAG: remark: '_ZNKSt14default_deleteI4NodeEclEPS0_' rebuilt as a ring of 2 copies {{.*}}, as planned
void drop(Node *N) { delete N; }
std::unique_ptr<Node> clear(std::unique_ptr<Node> Root) { return nullptr; }

// The policy builds a ring of it at once.
// CHECK-DAG: remark: '_Z5countP4Node' rebuilt as a ring of 3 copies {{.*}}, as planned
int count(Node *N) { return N ? 1 + count(N->Left.get()) + count(N->Right.get()) : 0; }

//--- late.plan
version: 1
functions:
  - {name: 'std::default_delete<Node>::operator()(Node*) const', plan: ring copies=2, where: late}
  - {name: count, plan: ring copies=3 no-guard, where: late}
