//===- AutoPolicy.h - What pays without being asked -------------*- C++ -*-===//
//
/// \file
/// The pass takes one shape of recursion.  For what it refuses, this policy
/// decides between nothing, a chain and a ring, and how many copies.  It reads
/// and changes nothing; AutoPass builds what it says.
///
/// A chain is for a depth that follows from constants at the calls from
/// outside, as at level 0, but of any number of arguments, self calls and calls
/// from outside.  It leaves no call, so it needs to fit as a whole.
///
/// Where a recursion counts, and runs to its end, its last levels are known
/// whatever it is entered with: a chain for those is entered by the function
/// itself, when its counter gets there.  Such leaves are straight-line code
/// that tests nothing.  The towers of Hanoi with the last six disks as leaves
/// run 2.6 times as fast as plain, at any height and in less code than a ring
/// that makes 1.5 to 2.0 of it.
///
/// Where results are added up, the sum is handed on from self call to self call
/// first (AccumulatorPassing.h), unless constants or equal calls make more of
/// it.
///
/// Otherwise a ring is asked for.  Four things make a ring pay, or not
/// (figures: docs/what-it-tells.md):
///
///  - The test that ends the recursion is put in front of the calls that close
///    the ring (see CallGuard.h).  Without it, the copies of a fused body are
///    entered for nothing as often as their number divides the depth badly.
///  - What tail recursion elimination turns into a loop is left to it.  An
///    accumulator, because otherwise the recursion would need stack; a tail
///    call whose arguments are results of other self calls, because copies of
///    it know nothing; the tail call beside one other call, as in a walk
///    through a tree, because copies of what is left are a row of bodies and
///    not a tree of them.
///  - The second and later self calls of a body skip a copy.  The calls that
///    close the ring then stand at different depths, and no argument is
///    as unlucky as every fourth height of the towers of Hanoi is with four
///    copies linked one after another.
///  - Equal calls merge: where nothing is written, and the arguments step by
///    constants, f(n-1) and f(n-2) share f(n-3).  Two copies without a guard,
///    so that the calls are unconditional where it matters, leave that to
///    common subexpression elimination.
///
/// Of a function with many self calls, copies are too large.  Its leaves are
/// taken out all the same: an evaluator of expression trees with six of them
/// runs 1.2 to 1.6 times as fast when it looks at what it is to evaluate before
/// it calls itself.
///
/// The body is multiplied by the self calls with every copy, so the number of
/// copies is what the bound on growth leaves room for.  Where that is less than
/// two, calls are not what the function spends its time on.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_POLICY_H
#define INLINERECURSION_PLUGIN_POLICY_POLICY_H

#include "plugin/recursion/OtherCalls.h"
#include "plugin/rewrite/AccumulatorPassing.h"
#include "plugin/rewrite/CallGuard.h"
#include "plugin/rewrite/CountedRecursion.h"
#include "plugin/rewrite/EntrySplit.h"
#include "plugin/tell/Verdict.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// What is to be built of one function.
struct RecursionPlan {
  /// A chain as the pass builds it at level 0, leaves or a ring as in Auto.h,
  /// or a function taken apart, whose rest is to be asked about in turn.
  enum Shape { Nothing, Chain, Leaves, Ring, Split };

  Shape Kind = Nothing;
  /// At least 1 for a chain, 3 for leaves and 2 for a ring, 0 for others.
  unsigned Copies = 0;
  /// What leaves are entered by: as many values as there are copies.
  std::optional<RecursionCounter> Counter;
  /// How many levels above the last activation leaves are entered.
  SmallVector<unsigned, 2> EntryLevels;
  /// Where the function is taken apart.
  std::optional<EntrySplit> Where;
  /// In front of the calls that close a ring, and all that is left of the
  /// function, which enters it.
  std::optional<EntryGuard> Guard;
  /// The second and later self calls of a body lead to the copy after the next.
  bool Staggered = false;
  /// What it adds to the module, once all copies are inlined that are to be
  /// (instructions).
  unsigned Growth = 0;
  /// Nothing is built because no test stands in front of the self calls.  Once
  /// other calls are inlined, one may.
  bool LacksTest = false;
  /// The decision in words.
  Verdict Decision;

  /// Nothing, for the reason in \p Decision.
  explicit RecursionPlan(Verdict Decision) : Decision(std::move(Decision)) {}
};

/// Limits of what is built.
struct AutoBounds {
  /// Most copies in a chain or ring.
  unsigned Copies;
  /// Most that one function grows by (instructions).
  unsigned FunctionGrowth;
  /// Is an inliner to come, which hands constants from copy to copy and makes
  /// nothing of some calls?
  bool InlinerFollows = false;
};

/// The decision about one function that calls itself and that the driver may
/// copy.
class AutoPolicy {
public:
  AutoPolicy(Function &F, FunctionAnalysisManager &FAM) : F(F), FAM(FAM) {}

  /// Is tail recursion elimination to be run on the function first?  The plan
  /// is then made for what is left.
  bool wantsLoopsFirst(const AutoBounds &Bounds);

  /// The sum that the function is to hand on from call to call first, if the
  /// plan for it is a ring, or leads to one.  A plan is then made for the
  /// function that does.
  std::optional<Accumulation> findSumToPass(const AutoBounds &Bounds);

  RecursionPlan makePlan(const AutoBounds &Bounds);

private:
  /// The ring of the function, whose self \p Calls merge or not, and which
  /// makes the calls \p Other beside them.
  RecursionPlan planRing(ArrayRef<CallBase *> Calls, bool MergesCalls,
                         const OtherCalls &Other, const AutoBounds &Bounds);

  /// What is left to do for \p Reason not to build a ring.
  RecursionPlan planWithoutRing(ArrayRef<CallBase *> Calls, unsigned BodySize,
                                const Verdict &Reason,
                                const AutoBounds &Bounds);

  Function &F;
  FunctionAnalysisManager &FAM;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_POLICY_H
