// class: unbounded
// sweep: argument 11 9 10 12
//
// Builds complete binary trees of owned nodes and sums them: build, sum and the
// implicit destructor are all recursive. Here for recursion through library
// code (the destructor) and memory allocation beside the calls.
//
// Reference: in heap order the nodes are numbered 1 to 2^d - 1, so the sum is
// (2^d - 1) * 2^(d - 1) plus the offset for each node.

#include "kernel.h"
#include <memory>

namespace {

struct Node {
  uint64_t Value;
  std::unique_ptr<Node> Left, Right;
};

uint64_t Offset;

std::unique_ptr<Node> build(int Depth, uint64_t Number) {
  KERNEL_CALL();
  if (Depth == 0)
    return nullptr;
  auto N = std::make_unique<Node>();
  N->Value = Number + Offset;
  N->Left = build(Depth - 1, 2 * Number);
  N->Right = build(Depth - 1, 2 * Number + 1);
  return N;
}

uint64_t sum(const Node *N) {
  KERNEL_CALL();
  return N ? N->Value + sum(N->Left.get()) + sum(N->Right.get()) : 0;
}

} // namespace

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 7500);
  int Depth = (int)kernelArgument(Argc, Argv, 2, 11, 1, 20);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Offset = static_cast<uint64_t>(R);
    kernelClobber(&Offset);
    auto Root = build(Depth, 1);
    for (int Pass = 0; Pass < 3; ++Pass) {
      kernelClobber(Root.get());
      Sum += sum(Root.get());
    }
  }

  uint64_t Expected = 0;
  for (long R = 0; R < Repeats; ++R) {
    uint64_t Nodes = (uint64_t{1} << Depth) - 1;
    Expected +=
        3 * (Nodes * (Nodes + 1) / 2 + Nodes * static_cast<uint64_t>(R));
  }
  return kernelReport("bintree", Repeats, Sum, Expected);
}
