//===- CopyLimits.cpp - How many copies of a ring pay ---------------------===//

#include "plugin/policy/CopyLimits.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/FusedSize.h"
#include "plugin/policy/Tuning.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/Unrolling.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Instructions.h"
#include <algorithm>

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;

/// Is \p A needed in \p L for more than to begin with?
static bool isUsedInLoop(const Argument &A, const Loop &L) {
  return any_of(A.users(), [&L](const User *U) {
    const auto *I = cast<Instruction>(U);
    const auto *Phi = dyn_cast<PHINode>(I);
    return L.contains(I) && (!Phi || Phi->getParent() != L.getHeader());
  });
}

/// The values of \p F that every copy of \p L has its own of.
static unsigned countCarriedValues(const Function &F, const Loop &L) {
  const auto Phis = L.getHeader()->phis();
  return std::distance(Phis.begin(), Phis.end()) +
         count_if(F.args(),
                  [&L](const Argument &A) { return isUsedInLoop(A, L); });
}

/// The values that a copy of \p L, the loop that \p F is, keeps while the one
/// inside it runs, which \p Call becomes.
static unsigned countKeptValues(Function &F, const Loop &L, CallBase &Call,
                                ScalarEvolution &SE) {
  // A sum, for one, goes in and comes back, or the call is not made.
  auto IsReplaced = [&](const PHINode &Phi) {
    return any_of(Phi.incoming_values(), [&](const Value *V) {
      const auto *Merged = dyn_cast<PHINode>(V);
      return V == &Call || (Merged && Merged->getParent() != L.getHeader() &&
                            is_contained(Merged->incoming_values(), &Call));
    });
  };
  // What differs by a constant from copy to copy, or not at all, is kept once.
  auto IsShared = [&](Argument &A) {
    Value *Next = Call.getArgOperand(A.getArgNo());
    return Next == &A || (SE.isSCEVable(A.getType()) &&
                          isa<SCEVConstant>(SE.getMinusSCEV(SE.getSCEV(Next),
                                                            SE.getSCEV(&A))));
  };
  return count_if(L.getHeader()->phis(),
                  [&](const PHINode &Phi) { return !IsReplaced(Phi); }) +
         count_if(F.args(), [&](Argument &A) {
           return isUsedInLoop(A, L) && !IsShared(A);
         });
}

/// The loop that all of the function is, if the self calls are in it and in no
/// short one, it goes on from an argument and carries few values; else null.
static const Loop *findSmallTailLoop(const Facts &Known) {
  const Function &F = Known.getFunction();
  const LoopInfo &LI = Known.getLoops();
  const ArrayRef<CallBase *> Calls = Known.getSelfCalls();
  const Loop *L = findTailLoop(F, LI);
  if (!L)
    return nullptr;
  auto BeginsWithArgument = [&F](const PHINode &Phi) {
    return isa<Argument>(Phi.getIncomingValueForBlock(&F.getEntryBlock()));
  };
  const unsigned MaxValues =
      Calls.size() == 1 ? MaxValuesAtOneCall : MaxValuesInTailLoop;
  const bool IsSmall = any_of(L->getHeader()->phis(), BeginsWithArgument) &&
                       countCarriedValues(F, *L) <= MaxValues &&
                       all_of(Calls, [&](const CallBase *Call) {
                         return LI.getLoopFor(Call->getParent()) == L &&
                                !isInShortLoop(*Call, LI, Known.getEvolution());
                       });
  return IsSmall ? L : nullptr;
}

/// Most copies that pay where the self calls stand, in which kind of loop.
static unsigned limitByLoops(const Facts &Known) {
  const ArrayRef<CallBase *> Calls = Known.getSelfCalls();
  if (const Loop *L = findSmallTailLoop(Known)) {
    const unsigned Kept =
        Calls.size() == 1
            ? countKeptValues(Known.getFunction(), *L, *Calls.front(),
                              Known.getEvolution())
            : 0;
    return Kept ? std::min(MaxCopiesInTailLoop, MaxKeptValues / Kept)
                : MaxCopiesInTailLoop;
  }
  if (Known.anyInLoop())
    return MaxCopiesInLoop + (Calls.size() > 1);
  return Calls.size() <= 2 ? MaxCopiesOfFewCalls : ~0u;
}

/// Most copies with which a ring pays.
static unsigned limitCopies(const Facts &Known) {
  if (Known.mergesCalls())
    return MaxCopiesToMerge;
  unsigned Limit = limitByLoops(Known);
  if (Known.isPath())
    Limit = std::min(Limit, Known.anyInLoop() ? MaxCopiesOfPathWithLoop
                                              : MaxCopiesOfPath);
  if (!Known.getGuard() && Known.anyInShortLoop())
    Limit = std::min(Limit, MaxCopiesInUnrolledLoop);
  if (Known.getOtherCalls().DirectCount > 0)
    Limit = std::min(Limit, MaxCopiesBesideCalls);
  return Limit;
}

RingStyle llvm::inlinerecursion::chooseRingStyle(const Facts &Known) {
  const PlanSpec *Plan = Known.getPlan();
  const auto IsWanted = [&](std::optional<bool> PlanSpec::*Flag, bool Pays) {
    return Plan && Plan->*Flag ? *(Plan->*Flag) : Pays;
  };
  // A call that is made anyhow, if a deeper one is equal to it, is not to stand
  // behind a test.  Equal calls of one level stand behind tests all the same.
  const bool HasGuard = IsWanted(
      &PlanSpec::Guard, !Known.mergesCalls() || Known.mergesWithinLevels());
  return {HasGuard ? Known.getGuard() : nullptr,
          IsWanted(&PlanSpec::Staggered, !Known.mergesCalls())};
}

std::optional<unsigned>
llvm::inlinerecursion::getWantedCopies(const Facts &Known) {
  const PlanSpec *Plan = Known.getPlan();
  return Plan ? Plan->Copies : Known.getRequestedCopies();
}

RingFit llvm::inlinerecursion::fitRing(const Facts &Known,
                                       const Bounds &Limits) {
  const RingStyle Style = chooseRingStyle(Known);
  const std::optional<unsigned> Requested = getWantedCopies(Known);
  const unsigned MaxCopies =
      Requested
          ? *Requested
          : std::min({Limits.Copies, Limits.RingCopies, limitCopies(Known)});
  RingFit Fit;
  for (unsigned Copies = 2; Copies <= MaxCopies; ++Copies) {
    const FusedSize Size = estimateFusedSize(
        Known.getBodySize(), Known.getSelfCalls().size(),
        Style.Guard ? Style.Guard->Size : 1, Copies, Style.Staggered);
    if (!Size.fits(Limits, Known.getFrameSize()))
      break;
    Fit = {Copies, unsigned(Size.Instructions)};
  }
  // Fewer are not what was asked for.
  return Requested && Fit.Copies != *Requested ? RingFit() : Fit;
}
