//===- GrowthBudget.h - What functions of a module may grow by --*- C++ -*-===//
//
/// \file
/// Shares out among the recursive functions of a module what copies may add to
/// it.  Where all that they ask for fits, as it does in a program that is one
/// recursion, each gets it.  Where it does not, none is to take what the others
/// need for their first copies, which gain more than further ones: there is a
/// most that any function gets, as high as the budget allows (max-min fairness,
/// as networks share out a link).  What a function leaves of its share, the
/// next ones may use; shares that are too small for copies add up that way.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_GROWTHBUDGET_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_GROWTHBUDGET_H

#include "llvm/ADT/ArrayRef.h"
#include <cstdint>

namespace llvm {
namespace inlinerecursion {

/// All sizes in instructions.
class GrowthBudget {
public:
  /// \p Limit is for all functions together; \p Demands is what each of them
  /// would grow by, in the order in which they come.
  GrowthBudget(uint64_t Limit, ArrayRef<unsigned> Demands);

  /// The most that the next function may grow by.
  uint64_t getShare() const;

  /// What is left for all functions that are still to come.
  uint64_t getLeft() const { return Left; }

  /// The next function, which asked for \p Demand, grows by \p Growth, which is
  /// at most getLeft().  Of a function that has had its turn the demand is 0.
  void take(unsigned Demand, uint64_t Growth);

private:
  uint64_t Left;
  /// What a function gets of its demand.
  uint64_t Cap;
  /// What the functions before left of their shares.
  uint64_t Unused = 0;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_GROWTHBUDGET_H
