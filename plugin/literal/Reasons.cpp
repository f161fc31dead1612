//===- Reasons.cpp - Why the pass takes a function, or does not -----------===//

#include "plugin/literal/Reasons.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "host/RecursionDepthEstimator.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/PassOption.h"
#include "plugin/legality/Protection.h"
#include "plugin/plan/PlanSpec.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

std::optional<Verdict> llvm::inlinerecursion::judgeFilter(const Function &F) {
  // Nobody has written what keeps it from being inlined.
  if (F.hasFnAttribute(StateMark))
    return refuse(AlreadyChained)
           << "it is a copy for a state of its arguments";
  if (const ProtectionReason *Protection = getProtection(F))
    return refuse(Protection->Name, Protection->Remedy) << Protection->Text;
  if (hasCloneMark(F))
    return refuse(AlreadyChained) << "it was chained before";
  if (F.hasOptNone())
    return refuse("OptNone", "remove optnone")
           << "it is not to be optimised (optnone)";
  if (F.doesNotRecurse())
    return refuse("NoRecurse") << "it is marked as not recursive (norecurse)";
  return std::nullopt;
}

/// The level that takes every function with one plain self call.
static constexpr StringLiteral AtLevel3 = "use -inline-recursion-opt-level=3";

/// What the rules of the level have built, as plans say it.
static std::string describePlan(PlanSpec::Shape Kind, unsigned Copies) {
  PlanSpec Plan(Kind);
  // No plan asks for a ring of one.
  if (Copies > 1 || Kind != PlanSpec::Ring)
    Plan.Copies = Copies;
  Plan.ByRules = true;
  return Plan.str();
}

/// Levels 1 and 2 are limits on the same three counts.
static Verdict
explainSize(const InlineRecursion::InlineRecursionCosting &Costing,
            unsigned MaxInsts, unsigned MaxBranches, unsigned MinCalls,
            unsigned MaxCalls) {
  if (Costing.NumOfInsts > MaxInsts)
    return refuse("TooManyInstructions", AtLevel3)
           << "it has " << NV("Instructions", Costing.NumOfInsts)
           << " instructions, more than " << NV("Limit", MaxInsts);
  if (Costing.NumOfBranches > MaxBranches)
    return refuse("TooManyBranches", AtLevel3)
           << "it has " << NV("Branches", Costing.NumOfBranches)
           << " branches, more than " << NV("Limit", MaxBranches);
  return refuse("WrongNumberOfCalls", AtLevel3)
         << "it makes " << NV("Calls", Costing.NumOfFunctionCalls)
         << " calls, not " << NV("AtLeast", MinCalls) << " to "
         << NV("AtMost", MaxCalls);
}

/// Level 0: why not?
static Verdict
explainDefaultFlow(InlineRecursion::InlineRecursionCosting &Costing) {
  Function *F = Costing.F;
  const auto Calls = findCallsOf(*F);
  if (Calls.size() != F->getNumUses())
    return refuse("OtherUses") << "it is used other than by plain direct calls";
  const unsigned OutsideCalls =
      count_if(Calls, [](const CallInst *Call) { return !isSelfCall(*Call); });
  if (OutsideCalls != 1)
    return refuse("NotCalledOnce")
           << "it is called from " << NV("OutsideCalls", OutsideCalls)
           << " places outside itself, not from exactly one";

  const auto *Depth =
      cast_or_null<SCEVConstant>(Costing.estimateRecursionDepth());
  if (!Depth) {
    RecursionDepthEstimator Estimator(F, Costing.SE, Costing.DT);
    Estimator.canEstimateRecursionDepth();
    if (StringRef Reason = Estimator.getDeclineReason(); !Reason.empty())
      return refuse("Declined") << Reason;
    return refuse("DepthUnknown")
           << "the depth of its recursion is not a known constant";
  }
  const unsigned Threshold = getPassOption("default-recursion-depth-threshold");
  if (Depth->getAPInt().getZExtValue() > Threshold)
    return refuse("TooDeep", "raise -default-recursion-depth-threshold")
           << "its recursion is "
           << NV("Depth", Depth->getAPInt().getZExtValue())
           << " activations deep, more than " << NV("Limit", Threshold);

  const auto Estimate = Costing.estimateInlineBenefit();
  if (!Estimate)
    return refuse("NotOneArgument")
           << "it has " << NV("Arguments", unsigned(F->arg_size()))
           << " arguments, not exactly one";
  return refuse("TooLittleBenefit", Estimate->Benefit > 0
                                        ? "lower -inline-recursion-profitablity"
                                        : "")
         << "a constant argument would save "
         << NV("Benefit", unsigned(Estimate->Benefit))
         << " instructions, not more than " << NV("Limit", Estimate->Limit);
}

/// Why does the record turn the function down?
static Verdict
explainRefusal(InlineRecursion::InlineRecursionCosting &Costing) {
  if (!Costing.IsRecursiveFunction)
    return refuse("NoPlainSelfCall", "declare it noexcept")
           << "it calls itself only by invoke, never by a plain call";
  if (Costing.NumOfRecursiveCalls != 1)
    return refuse("SeveralSelfCalls")
           << "it calls itself in "
           << NV("SelfCalls", Costing.NumOfRecursiveCalls)
           << " places, not in exactly one";
  switch (Costing.OptLevel) {
  case 0:
    return explainDefaultFlow(Costing);
  case 1:
    return explainSize(Costing, 20, 5, 1, 1);
  case 2:
    return explainSize(Costing, 50, 10, 0, 4);
  default:
    break;
  }

  const unsigned MaxInModule =
      getPassOption("inline-recursion-max-callsite-mod");
  if (Costing.NumOfCandidateFunCallSiteInMod > MaxInModule)
    return refuse("TooManyCallSites",
                  "raise -inline-recursion-max-callsite-mod")
           << "it is called from "
           << NV("CallSites", Costing.NumOfCandidateFunCallSiteInMod)
           << " places in the module, more than " << NV("Limit", MaxInModule);
  const unsigned MaxInCaller =
      getPassOption("inline-recursion-max-callsite-fun");
  auto Over = find_if(Costing.NumOfCandidateFunCallSite,
                      [MaxInCaller](const auto &CallerAndCount) {
                        return CallerAndCount.second > MaxInCaller;
                      });
  return refuse("TooManyCallSitesInCaller",
                "raise -inline-recursion-max-callsite-fun")
         << "it is called from " << NV("CallSites", Over->second)
         << " places in '" << NV("Caller", Over->first) << "', more than "
         << NV("Limit", MaxInCaller);
}

Verdict llvm::inlinerecursion::judgeCosting(
    InlineRecursion::InlineRecursionCosting Costing, unsigned CloneCount) {
  // An invalid level is costed as level 2; saying so is left to the pass.
  if (Costing.OptLevel > 4)
    Costing.OptLevel = 2;

  const PassOptionScope RestoreDepth(DepthOption);
  if (!Costing.isProfitableToInline())
    return explainRefusal(Costing);

  const unsigned Depth = getPassOption(DepthOption);
  const unsigned CloneLimit = getPassOption(CloneLimitOption);
  if (Depth + CloneCount > CloneLimit)
    return refuse("CloneLimit", "raise -maximum-clone-limit-inline-recursion")
           << NV("Depth", Depth) << " more copies on top of "
           << NV("CloneCount", CloneCount) << " would exceed the limit of "
           << NV("Limit", CloneLimit) << " per module";

  Verdict V = accept("Chained");
  V.Growth = uint64_t(Depth) * getCodeSize(*Costing.F);
  V.Plan = describePlan(PlanSpec::Chain, Depth);
  V << NV("Shape", "chain") << " of " << NV("Copies", Depth)
    << (Depth == 1 ? " copy" : " copies") << " at level "
    << NV("Level", Costing.OptLevel);
  if (const auto Estimate = Costing.estimateInlineBenefit();
      Estimate && Costing.OptLevel == 0)
    V << ", a constant argument saves "
      << NV("Benefit", unsigned(Estimate->Benefit)) << " of "
      << NV("Instructions", Costing.NumOfInsts) << " instructions";
  return V;
}

Verdict llvm::inlinerecursion::explainRefusedRing(const Function &F) {
  if (std::optional<Verdict> Filtered = judgeFilter(F))
    return *Filtered;
  if (F.hasFnAttribute(EligibleMark))
    return refuse("CloneLimit", "raise -maximum-clone-limit-inline-recursion")
           << "the ring that it requests would exceed the limit of "
           << NV("Limit", getPassOption(CloneLimitOption))
           << " copies per module";
  return refuse("NoRemainder", "begin it with one by 2, 4 or 8")
         << "its entry block takes no remainder of an argument by a constant "
            "that is known to have at most "
         << NV("Limit", getPassOption(LongestRingOption)) << " values";
}

/// The instructions of all that was made of the origin of \p Ring.
static uint64_t measureRing(const CloneChain &Ring) {
  uint64_t Size = 0;
  for (const Function *Copy : Ring.Copies)
    Size += getCodeSize(*Copy);
  const std::string Specialized =
      (Ring.Origin->getName() + SpecializedSuffix + ".").str();
  for (const Function &F : *Ring.Origin->getParent())
    if (F.getName().startswith(Specialized))
      Size += getCodeSize(F);
  return Size;
}

Verdict llvm::inlinerecursion::describeRing(const CloneChain &Ring) {
  const StringRef Asked =
      Ring.Origin->getFnAttribute(Request).getValueAsString();
  Verdict V = accept("Chained");
  V.Growth = measureRing(Ring);
  V.Plan = describePlan(PlanSpec::Ring, Ring.Copies.size());
  V << NV("Shape", "ring") << " of "
    << NV("Copies", unsigned(Ring.Copies.size()))
    << (Ring.Copies.size() == 1 ? " copy" : " copies")
    << (Asked == FoundRequest ? ", without being asked" : ", as requested");
  return V;
}
