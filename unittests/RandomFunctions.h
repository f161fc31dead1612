//===- RandomFunctions.h - Modules of every kind, by a seed -----*- C++ -*-===//
///
/// \file
/// Valid modules of functions that call themselves and each other in all ways
/// that the pass tells apart.  They are not meant to be run.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_UNITTESTS_RANDOMFUNCTIONS_H
#define INLINERECURSION_UNITTESTS_RANDOMFUNCTIONS_H

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace llvm {
class Module;
}

namespace llvm::unittest {

/// The same numbers on every machine, which the standard library's
/// distributions do not promise.
class Random {
public:
  explicit Random(uint64_t Seed) : Engine(Seed * 2654435761u + 12345) {}

  /// A number below \p End, which is not 0.
  unsigned below(unsigned End) { return Engine() % End; }
  bool percent(unsigned Chance) { return below(100) < Chance; }
  /// An index into \p Weights.
  unsigned weighted(const std::vector<unsigned> &Weights) {
    unsigned Sum = 0;
    for (unsigned Weight : Weights)
      Sum += Weight;
    unsigned Point = below(Sum), Index = 0;
    while (Point >= Weights[Index])
      Point -= Weights[Index++];
    return Index;
  }
  template <typename T> const T &pick(const std::vector<T> &From) {
    return From[below(From.size())];
  }

private:
  std::mt19937_64 Engine;
};

/// The text of a module: what a seed makes, and only that.
std::string makeRandomModule(uint64_t Seed);

/// Gives the use lists of functions and arguments an order of the seed's.  The
/// text of a module does not hold it.
void shuffleUses(Module &M, uint64_t Seed);

} // namespace llvm::unittest

#endif // INLINERECURSION_UNITTESTS_RANDOMFUNCTIONS_H
