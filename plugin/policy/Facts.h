//===- Facts.h - What is known of a recursive function ----------*- C++ -*-===//
//
/// \file
/// What obstacles, offers and preparation ask about a function.  Each fact is
/// worked out when it is asked for, and once.  They hold as long as the
/// function, those who call it and those whom it calls stay as they are.
///
/// They stand above the rewrites because one of them is the guard, which is
/// found where it is built.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_FACTS_H
#define INLINERECURSION_PLUGIN_POLICY_FACTS_H

#include "host/RecursionDepthEstimator.h"
#include "plugin/plan/PlanSpec.h"
#include "plugin/recursion/OtherCalls.h"
#include "plugin/recursion/States.h"
#include "plugin/rewrite/CallGuard.h"
#include "llvm/IR/PassManager.h"
#include <memory>
#include <optional>

namespace llvm {

class CallBase;
class LoopInfo;
class PostDominatorTree;

namespace inlinerecursion {

class Facts {
public:
  /// \p F calls itself and may be copied.  \p InlinerFollows: an inliner is to
  /// come, which makes nothing of some calls.
  Facts(Function &F, FunctionAnalysisManager &FAM, bool InlinerFollows);

  Function &getFunction() const { return F; }

  /// The direct calls in the function of itself, in the order of its body; at
  /// least one.
  ArrayRef<CallBase *> getSelfCalls() const { return SelfCalls; }

  /// What is to be built of it, where somebody has said so; else null.
  const PlanSpec *getPlan() const { return Wanted ? &*Wanted : nullptr; }

  /// The copies that its source asks for; none if it does not.
  std::optional<unsigned> getRequestedCopies() const;

  /// Does its source ask for a ring that cannot be built?
  bool asksForStates() const;

  /// Its instructions.
  unsigned getSize() const { return Size; }

  /// Its instructions and those of what will be inlined into it.
  unsigned getBodySize() const { return Size + getOtherCalls().InlinedSize; }

  /// Its local variables in memory (bytes).
  uint64_t getFrameSize() const;

  /// Would equal calls of two copies merge (EqualCalls.h)?
  bool mergesCalls() const;

  /// Would they, and only with calls that stand as deep as they do?
  bool mergesWithinLevels() const;

  const OtherCalls &getOtherCalls() const;

  /// The test that ends the recursion, if it is small enough to be made in
  /// front of a call; null if there is none.
  const EntryGuard *getGuard() const;

  /// How many activations stand on each other at most, where all that enter the
  /// function do so with constants; none if that is not known.
  std::optional<unsigned> getDepth() const;

  /// Why a chain of known depth would slow the function down, as half a
  /// sentence; empty if it would not.
  StringRef getReasonAgainstChain() const;

  /// Is \p Call, one of the self calls, made in a loop?
  bool isInLoop(const CallBase &Call) const;
  bool anyInLoop() const;

  /// Is any self call made in a loop that the compiler unrolls?
  bool anyInShortLoop() const;

  /// Is none of the self calls, two or more, made where another one has been?
  bool isPath() const;

  /// What is known of its arguments all along, or of those that its plan names;
  /// never null, and empty for a copy that was made for a state.
  std::shared_ptr<const StateSet> getStates() const;

  const LoopInfo &getLoops() const;
  DominatorTree &getDominators() const;
  const PostDominatorTree &getPostDominators() const;
  ScalarEvolution &getEvolution() const;

private:
  RecursionDepthEstimator &getEstimator() const;

  Function &F;
  FunctionAnalysisManager &FAM;
  const bool InlinerFollows;
  const SmallVector<CallBase *, 4> SelfCalls;
  const unsigned Size;
  const std::optional<PlanSpec> Wanted;

  // Not known yet where they are empty.
  mutable std::optional<uint64_t> FrameSize;
  mutable std::optional<bool> MergesCalls;
  mutable std::optional<bool> MergesWithinLevels;
  mutable std::optional<OtherCalls> Other;
  mutable std::optional<std::optional<EntryGuard>> Guard;
  mutable std::optional<RecursionDepthEstimator> Estimator;
  mutable bool MayDepthBeKnown = false;
  mutable std::optional<std::optional<unsigned>> Depth;
  mutable std::shared_ptr<const StateSet> States;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_FACTS_H
