//===- CountedRecursion.h - Recursion that counts ---------------*- C++ -*-===//
//
/// \file
/// Many recursions count: the disks of a tower, the levels of a tree that is
/// built.  One argument steps by the same constant at every self call, and the
/// first thing that an activation does is to compare it with a constant and
/// perhaps return.  Where nothing else keeps it from making all of its calls,
/// that argument alone tells how much is left of the recursion:
///
///   void move(int n, int from, int to, int via) {
///     if (n == 0)                                   // 0: the last activation
///       return;
///     move(n - 1, from, via, to);                   // 1: three activations
///     print(from, to);                              // 2: seven
///     move(n - 1, via, to, from);
///   }
///
/// Most activations of such a recursion are close to the last ones.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_COUNTEDRECURSION_H
#define INLINERECURSION_PLUGIN_REWRITE_COUNTEDRECURSION_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include <optional>

namespace llvm {

class Argument;
class CallBase;
class ConstantInt;
class Function;
class ScalarEvolution;

namespace inlinerecursion {

/// The argument that a recursion counts by.
struct RecursionCounter {
  Argument *Counter;
  /// Its values, from the last activation upwards: with Values[K], there are K
  /// levels of activations below.  Not empty.
  SmallVector<ConstantInt *, 8> Values;
  /// Does every activation but the last ones make all of the calls, if it
  /// returns?
  bool IsComplete;
};

/// The counter of \p F, whose self calls are \p Calls, two or more.  Values are
/// given up to \p MaxLevels levels above the last one.
std::optional<RecursionCounter> findRecursionCounter(Function &F,
                                                     ArrayRef<CallBase *> Calls,
                                                     unsigned MaxLevels,
                                                     ScalarEvolution &SE);

/// Lets \p Copy, a copy of the function that \p Counter was found in, know that
/// it is only called \p Levels above the last activation.
void fixCounter(Function &Copy, const RecursionCounter &Counter,
                unsigned Levels);

/// Where \p F is entered with a counter of \p Entries, it calls the function
/// that stands beside it instead, which does what \p F does with that value.
/// The counter is \p Counter, an argument that \p F compares with constants
/// anyhow before it does anything that may not return.
void enterLeaves(Function &F, Argument &Counter,
                 ArrayRef<std::pair<ConstantInt *, Function *>> Entries);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_COUNTEDRECURSION_H
