//===- Facts.cpp - What is known of a recursive function ------------------===//

#include "plugin/policy/Facts.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/Size.h"
#include "plugin/plan/Planned.h"
#include "plugin/policy/Tuning.h"
#include "plugin/recursion/EqualCalls.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/Unrolling.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Dominators.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// What \p Known holds, worked out by \p Find if it is empty.
template <typename T, typename FindT>
static T &findOnce(std::optional<T> &Known, FindT Find) {
  if (!Known)
    Known.emplace(Find());
  return *Known;
}

Facts::Facts(Function &F, FunctionAnalysisManager &FAM, bool InlinerFollows)
    : F(F), FAM(FAM), InlinerFollows(InlinerFollows),
      SelfCalls(findSelfCalls(F)), Size(getCodeSize(F)),
      Wanted(inlinerecursion::getPlan(F)) {}

std::optional<unsigned> Facts::getRequestedCopies() const {
  unsigned Count;
  if (F.getFnAttribute(CopiesMark).getValueAsString().getAsInteger(10, Count))
    return std::nullopt;
  return Count;
}

bool Facts::asksForStates() const { return F.hasFnAttribute(RefusedMark); }

uint64_t Facts::getFrameSize() const {
  return findOnce(FrameSize,
                  [this] { return inlinerecursion::getFrameSize(F); });
}

bool Facts::mergesCalls() const {
  return findOnce(MergesCalls,
                  [this] { return hasEqualCalls(F, SelfCalls, FAM); });
}

bool Facts::mergesWithinLevels() const {
  return findOnce(MergesWithinLevels, [this] {
    return mergesCalls() &&
           !hasEqualCallsAcrossLevels(F, SelfCalls, getEvolution());
  });
}

const OtherCalls &Facts::getOtherCalls() const {
  return findOnce(Other, [this] { return findOtherCalls(F, InlinerFollows); });
}

const EntryGuard *Facts::getGuard() const {
  const auto &Found = findOnce(
      Guard, [this] { return findEntryGuard(F, tuning::MaxGuardSize); });
  return Found ? &*Found : nullptr;
}

RecursionDepthEstimator &Facts::getEstimator() const {
  if (!Estimator) {
    Estimator.emplace(&F, &getEvolution(), &getDominators());
    MayDepthBeKnown = Estimator->canEstimateRecursionDepth();
  }
  return *Estimator;
}

std::optional<unsigned> Facts::getDepth() const {
  return findOnce(Depth, [this]() -> std::optional<unsigned> {
    // The estimator answers for plain calls only.
    RecursionDepthEstimator &Estimator = getEstimator();
    if (!MayDepthBeKnown || Estimator.getCallSites().size() != SelfCalls.size())
      return std::nullopt;
    return Estimator.findDeepestRecursion();
  });
}

StringRef Facts::getReasonAgainstChain() const {
  return getEstimator().getDeclineReason();
}

bool Facts::isInLoop(const CallBase &Call) const {
  return getLoops().getLoopFor(Call.getParent()) != nullptr;
}

bool Facts::anyInLoop() const {
  return any_of(SelfCalls,
                [this](const CallBase *Call) { return isInLoop(*Call); });
}

bool Facts::anyInShortLoop() const {
  return any_of(SelfCalls, [this](const CallBase *Call) {
    return isInShortLoop(*Call, getLoops(), getEvolution());
  });
}

bool Facts::isPath() const {
  return excludeEachOther(SelfCalls, getDominators());
}

/// The arguments that \p Wanted names, counted from 0.
static SmallVector<unsigned, 4> getArguments(const PlanSpec &Wanted) {
  SmallVector<unsigned, 4> Numbers = Wanted.Arguments;
  for (unsigned &Number : Numbers)
    --Number;
  return Numbers;
}

std::shared_ptr<const StateSet> Facts::getStates() const {
  if (States)
    return States;
  StateSet Found;
  if (!F.hasFnAttribute(StateMark))
    Found = findStates(F, FAM);
  // Which arguments are worth it may have been found for each call from outside
  // by itself, so what was found is not looked for anew.
  if (Wanted && !Wanted->Arguments.empty() &&
      Found.getKnownArguments() != getArguments(*Wanted) &&
      !F.hasFnAttribute(StateMark))
    Found = findStatesOf(F, getArguments(*Wanted), FAM);
  States = std::make_shared<const StateSet>(std::move(Found));
  return States;
}

const LoopInfo &Facts::getLoops() const {
  return FAM.getResult<LoopAnalysis>(F);
}

DominatorTree &Facts::getDominators() const {
  return FAM.getResult<DominatorTreeAnalysis>(F);
}

const PostDominatorTree &Facts::getPostDominators() const {
  return FAM.getResult<PostDominatorTreeAnalysis>(F);
}

ScalarEvolution &Facts::getEvolution() const {
  return FAM.getResult<ScalarEvolutionAnalysis>(F);
}
