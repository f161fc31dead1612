//===- Driver.h - The driver of the pass, set up ----------------*- C++ -*-===//
//
/// \file
/// The pass's own driver for those who use it function by function, or look on
/// while it runs.  One SingleRun must be alive as long as it is used.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_DRIVER_H
#define INLINERECURSION_PLUGIN_IR_DRIVER_H

#include "pass/InlineRecursion.h"
#include "llvm/IR/PassManager.h"
#include <functional>

namespace llvm {
namespace inlinerecursion {

/// A driver whose analyses come from a manager of analyses.
class Driver : public InlineRecursion {
public:
  /// At \p Level, 0 to 4 (0 leaves it to `inline-recursion-opt-level` where a
  /// whole module is run), granting rings of at most \p LongestRing copies.
  Driver(FunctionAnalysisManager &FAM, unsigned Level, unsigned LongestRing);
  Driver(const Driver &) = delete;
  Driver &operator=(const Driver &) = delete;

  /// Builds \p Count copies of \p F and leads its callers to the first one.
  /// Linked as a ring, the last one calls the first, otherwise \p F.
  SmallVector<Function *, 4> buildCopies(Function &F, unsigned Count,
                                         bool AsRing);

private:
  // The pass's driver refers to its getters and does not own them.
  std::function<ScalarEvolution *(Function &)> EvolutionGetter;
  std::function<DominatorTree *(Function &)> TreeGetter;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_DRIVER_H
