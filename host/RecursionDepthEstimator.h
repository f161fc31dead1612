//===- RecursionDepthEstimator.h - How deep does it recurse? ----*- C++ -*-===//
//
/// \file
/// Counts the activations that one entry into a recursive function makes, when
/// the arguments of the entry are constants.
///
///   int fact(int n) { return n == 0 ? 1 : n * fact(n - 1); }
///   fact(5)                                   // six activations: n = 5 ... 0
///
/// A chain of as many copies leaves the recursive call of the last copy dead,
/// and every copy with a constant argument.
///
/// The method is to walk the recursion on paper.  Each branch or switch that
/// control must leave on certain sides to get to the recursive call is a guard;
/// the dominator tree yields them.  Beginning with the arguments of the outside
/// call, the guards are evaluated; as long as none of them is known to turn
/// away, the operands of the recursive call become the arguments of the next
/// activation.  Values are evaluated by folding their instructions, and through
/// ScalarEvolution where a loop stands in between.  A guard that is not decided
/// by the known arguments (a pruning test on memory, say) lets the walk pass:
/// the count is that of the deepest path.
///
/// Limits, all of which yield "no estimate": MaxCallSites recursive calls,
/// MaxEntries different tuples of arguments at the outside calls,
/// MaxActivations per entry, MaxTuples different tuples at one depth where the
/// recursion may take any of the calls, MaxFoldDepth nested instructions per
/// value (and as large an expression where ScalarEvolution is asked).  One
/// estimate thus folds at most MaxCallSites * MaxTuples * MaxActivations times
/// the instructions that guards and recursive operands are computed from; the
/// guards are found in time linear in the blocks of the function.  Looking for
/// a reason to decline walks each loop around a recursive call once per integer
/// PHI in its header.
///
/// Some functions are better left alone even though their depth is known.  When
/// the recursive call sits in a short loop of constant trip count, and is only
/// made in some trips, most of the work may lie in the loop of the outermost
/// activation.  The compiler unrolls that loop as long as it is small, and
/// whatever depends on the number of the trip folds: a division by it becomes a
/// multiplication, a branch on it disappears.  With the other levels flattened
/// into it the loop is too large for that, and a recursion that is rarely taken
/// does not pay for the loss (up to two and a half times slower, measured). The
/// estimator declines such functions; getDeclineReason() says so.
///
/// It reads the module and changes nothing; a wrong answer costs speed, never
/// correctness, because a chain of any depth computes the same.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H
#define INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/ADT/StringRef.h"
#include <optional>
#include <utility>

namespace llvm {

class CallInst;
class Constant;
class DominatorTree;
class Function;
class SCEV;
class ScalarEvolution;

/// Estimates how many activations of a recursive function one entry makes.
class RecursionDepthEstimator {
public:
  static constexpr unsigned MaxCallSites = 8;
  static constexpr unsigned MaxEntries = 8;
  static constexpr unsigned MaxActivations = 32;
  static constexpr unsigned MaxTuples = 32;
  static constexpr unsigned MaxFoldDepth = 32;
  /// Trips, and instructions over all trips, up to which the compiler is taken
  /// to unroll a loop (its threshold of 300 with its bonus for what folds).
  static constexpr unsigned MaxUnrolledTrips = 16;
  static constexpr unsigned MaxUnrolledSize = 1200;

  /// \p F and \p SE are not null, and F has a body; \p DT may be null.
  RecursionDepthEstimator(Function *F, ScalarEvolution *SE, DominatorTree *DT);

  /// Can F be judged at all?  It can when it calls itself, there is a dominator
  /// tree, and every direct call from outside passes at least one constant.
  /// When true, getCallSites() is filled.  Declines functions that a chain
  /// would slow down, see above.
  bool canEstimateRecursionDepth();

  /// Half a sentence about why a function that could be judged was declined;
  /// empty if it was not.
  StringRef getDeclineReason() const { return DeclineReason; }

  /// The plain direct calls of F in F, in layout order.
  ArrayRef<CallInst *> getCallSites() const { return CallSites; }

  /// The (shallowest, deepest) number of activations, over the outside calls,
  /// when every activation recurses through \p Call (one of getCallSites()).
  /// Both are 32-bit constants of at least 1, or both are null: no guard of
  /// \p Call is ever decided, or the recursion does not end in time.
  std::pair<const SCEV *, const SCEV *>
  identifyRecursionDepthForCallSite(CallInst *Call);

  /// The most activations, at least 1, that stand on each other when every
  /// activation recurses through whichever of getCallSites() it gets to; none
  /// if that does not end in time, or more than MaxTuples tuples of arguments
  /// are met at one depth.  Each call alone may tell of less: one that is made
  /// for odd numbers and one for even ones end at once.
  std::optional<unsigned> findDeepestRecursion();

private:
  /// Is \p Call made in some trips only of a loop that is worth more unrolled?
  bool isInLoopBetterUnrolled(CallInst *Call) const;

  /// One entry per formal argument; null where the value is not known.
  using ArgumentTuple = SmallVector<Constant *, 4>;

  Function *F;
  ScalarEvolution *SE;
  DominatorTree *DT;
  SmallVector<CallInst *, 2> CallSites;
  /// The different tuples that F is entered with from outside.
  SmallVector<ArgumentTuple, 2> Entries;
  StringRef DeclineReason;
};

} // namespace llvm

#endif // INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H
