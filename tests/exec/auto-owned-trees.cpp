// Destructors that call each other through library functions are one recursion
// behind the inliner, and destroy in the same order as before.
// RUN: %python %S/../tools/compare_auto.py --clang %clangxx --plugin %plugin --scratch %t.dir --ring _ZNSt10unique_ptrI4NodeSt14default_deleteIS0_EED2Ev --leaf-chain _ZL5buildij --passed-sum _ZL3sumPK4Node --ring _ZL3sumPK4Node %s
#include <cstdio>
#include <memory>

static unsigned Trail;

struct Node {
  unsigned Value;
  std::unique_ptr<Node> Left, Right;
  explicit Node(unsigned Value) : Value(Value) {}
  ~Node() { Trail = Trail * 31 + Value; }
};

static std::unique_ptr<Node> build(int Depth, unsigned Seed) {
  if (Depth == 0 || Seed % 7 == 3)
    return nullptr;
  auto N = std::make_unique<Node>(Seed);
  N->Left = build(Depth - 1, Seed * 5 + 1);
  N->Right = build(Depth - 1, Seed * 3 + 2);
  return N;
}

static unsigned sum(const Node *N) {
  return N ? N->Value + sum(N->Left.get()) + sum(N->Right.get()) : 0;
}

int main() {
  for (int Depth = 0; Depth != 12; ++Depth) {
    auto Root = build(Depth, unsigned(Depth) + 1);
    std::printf("%u", sum(Root.get()));
    if (Root && Depth % 2)
      Root->Left.reset();
    Root = nullptr;
    std::printf(" %u\n", Trail);
  }
}
