// class: unbounded
// sweep: argument 2000 500 1000 1001 1002 4000
//
// Evaluates an expression tree through pointers with a switch on the operator,
// in C++. Here for a recursion whose branches hold their own pair of calls, so
// the function has many calls of itself.
//
// Reference: the nodes lie in an array with operands before their operator, so
// one pass in order evaluates them.

#include "kernel.h"
#include <vector>

namespace {

constexpr int Cases = 8;

enum class Kind { Constant, Add, Subtract, Multiply, Not };

struct Node {
  Kind K;
  uint32_t Value;
  const Node *Left, *Right;
};

uint32_t evaluate(const Node &N) {
  KERNEL_CALL();
  switch (N.K) {
  case Kind::Constant:
    return N.Value;
  case Kind::Add:
    return evaluate(*N.Left) + evaluate(*N.Right);
  case Kind::Subtract:
    return evaluate(*N.Left) - evaluate(*N.Right);
  case Kind::Multiply:
    return evaluate(*N.Left) * evaluate(*N.Right);
  case Kind::Not:
    return ~evaluate(*N.Left);
  }
  return 0;
}

/// Joins random neighbours until one tree is left.
std::vector<Node> buildTree(size_t Leaves) {
  std::vector<Node> Nodes;
  Nodes.reserve(3 * Leaves);
  std::vector<const Node *> Forest;
  uint32_t Random = 8;
  for (size_t I = 0; I < Leaves; ++I) {
    Nodes.push_back({Kind::Constant, kernelRandom(&Random), nullptr, nullptr});
    Forest.push_back(&Nodes.back());
  }
  while (Forest.size() > 1) {
    size_t At = kernelRandom(&Random) % (Forest.size() - 1);
    auto K = static_cast<Kind>(1 + kernelRandom(&Random) % 3);
    Nodes.push_back({K, 0, Forest[At], Forest[At + 1]});
    if (kernelRandom(&Random) % 4 == 0 && Nodes.size() < 3 * Leaves - 8) {
      const Node *Inner = &Nodes.back();
      Nodes.push_back({Kind::Not, 0, Inner, nullptr});
    }
    Forest[At] = &Nodes.back();
    Forest.erase(Forest.begin() + static_cast<std::ptrdiff_t>(At) + 1);
  }
  return Nodes;
}

uint32_t referenceValue(const std::vector<Node> &Nodes) {
  std::vector<uint32_t> Values;
  for (const Node &N : Nodes) {
    uint32_t A =
        N.Left ? Values[static_cast<size_t>(N.Left - Nodes.data())] : 0;
    uint32_t B =
        N.Right ? Values[static_cast<size_t>(N.Right - Nodes.data())] : 0;
    Values.push_back(N.K == Kind::Constant   ? N.Value
                     : N.K == Kind::Add      ? A + B
                     : N.K == Kind::Subtract ? A - B
                     : N.K == Kind::Multiply ? A * B
                                             : ~A);
  }
  return Values.back();
}

} // namespace

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000);
  auto Leaves =
      static_cast<size_t>(kernelArgument(Argc, Argv, 2, 2000, 10, 100000));
  std::vector<Node> Nodes = buildTree(Leaves);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Nodes[0].Value = static_cast<uint32_t>(R % Cases);
    kernelClobber(Nodes.data());
    Sum += evaluate(Nodes.back());
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    Nodes[0].Value = static_cast<uint32_t>(Case);
    Expected += kernelShare(Repeats, Cases, Case) * referenceValue(Nodes);
  }
  return kernelReport("exprtree", Repeats, Sum, Expected);
}
