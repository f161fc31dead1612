//===- Protection.cpp - What the pass is kept away from -------------------===//

#include "plugin/legality/Protection.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/ProfileRepair.h"
#include "plugin/legality/RingSize.h"
#include "plugin/plan/Planned.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Remarks.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/DebugCounter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

DEBUG_COUNTER(FunctionCounter, "inlinerecursion-function",
              "Controls which recursive functions copies are made of");

/// Of what the driver can never accept.
static const ProtectionReason NotRecursive = {
    "NotRecursive", "it does not call itself", [](const Function &F) {
      return !F.hasFnAttribute(Request) && !isDirectlyRecursive(F);
    }};

/// By -debug-counter, to find the one function whose chain makes a difference.
static const ProtectionReason SkippedByCounter = {
    "SkippedByCounter", "the debug counter skips it", [](const Function &) {
      return !DebugCounter::shouldExecute(FunctionCounter);
    }};

/// Those with a plan are kept away from the rules of the level, and open to the
/// automatic policy (releasePlanned).
static const ProtectionReason Planned = {
    "Planned", "its plan is not left to the rules of the level", isPlanned};
static const ProtectionReason LeftByPlan = {
    "LeftByPlan", "its plan leaves it as it is", [](const Function &F) {
      const std::optional<PlanSpec> Plan = getPlan(F);
      return Plan && Plan->Kind == PlanSpec::None;
    }};

const ProtectionReason *
llvm::inlinerecursion::getProtection(const Function &F) {
  const Attribute Mark = F.getFnAttribute(ProtectedMark);
  if (!Mark.isValid())
    return nullptr;
  for (const ArrayRef<ProtectionReason> Reasons :
       {getHazards(), getWishes(), ArrayRef(SkippedByCounter),
        ArrayRef(NotRecursive), ArrayRef(Planned), ArrayRef(LeftByPlan)})
    for (const ProtectionReason &R : Reasons)
      if (R.Name == Mark.getValueAsString())
        return &R;
  return nullptr;
}

static void protect(Function &F, const ProtectionReason &Reason) {
  AttrBuilder Marks(F.getContext());
  Marks.addAttribute(CloneMark);
  Marks.addAttribute(ProtectedMark, Reason.Name);
  F.addFnAttrs(Marks);
}

bool llvm::inlinerecursion::isLeftToStates(const Function &F) {
  const ProtectionReason *Reason = getProtection(F);
  if (!Reason || !Reason->LeavesStates)
    return false;
  // A plan overrules wishes, and may be one for later.
  return isPlanned(F) ? getPlan(F).has_value() : !findWish(F);
}

void llvm::inlinerecursion::removeProtection(Function &F) {
  F.removeFnAttr(CloneMark);
  F.removeFnAttr(ProtectedMark);
}

void llvm::inlinerecursion::removeProtection(Module &M) {
  for (Function &F : M)
    if (F.hasFnAttribute(ProtectedMark))
      removeProtection(F);
}

void llvm::inlinerecursion::releasePlanned(Module &M) {
  if (!hasPlans(M))
    return;
  for (Function &F : M)
    if (F.getFnAttribute(ProtectedMark).getValueAsString() == Planned.Name &&
        getPlan(F)) {
      removeProtection(F);
      markOrigin(F);
    }
}

/// What \p F has to be kept away for; null if the pass may have it.
static const ProtectionReason *findProtection(const Function &F) {
  if (NotRecursive.Holds(F))
    return &NotRecursive;
  const ProtectionReason *Hazard = findReason(getHazards(), F);
  if (Hazard && !Hazard->LeavesStates)
    return Hazard;
  if (LeftByPlan.Holds(F))
    return &LeftByPlan;
  if (const ProtectionReason *Wish = findWish(F);
      Wish && !F.hasFnAttribute(Request) && !F.hasFnAttribute(CopiesMark) &&
      !isPlanned(F))
    return Wish;
  // Behind these, so that it counts what may otherwise be rebuilt.
  if (SkippedByCounter.Holds(F))
    return &SkippedByCounter;
  // This one is left to the automatic policy just as what is planned.
  if (Hazard)
    return Hazard;
  return Planned.Holds(F) ? &Planned : nullptr;
}

PreservedAnalyses ProtectionPass::run(Module &M, ModuleAnalysisManager &) {
  for (Function &F : M) {
    // The driver looks at none of these.
    if (F.isDeclaration() || hasCloneMark(F) || F.hasOptNone() ||
        F.doesNotRecurse())
      continue;
    if (F.hasFnAttribute(Request))
      withdrawLargeRequest(F);
    if (const ProtectionReason *Reason = findProtection(F)) {
      warnAboutRequest(F, refuse(Reason->Name, Reason->Remedy) << Reason->Text);
      protect(F, *Reason);
      if (!isLeftToStates(F))
        continue;
    }
    markOrigin(F);
  }
  // No analysis rests on these attributes.
  return PreservedAnalyses::all();
}
