//===- Remarks.cpp - What was decided, told to the user -------------------===//

#include "plugin/tell/Remarks.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/PlanOptions.h"
#include "plugin/plan/Planned.h"
#include "plugin/tell/Decisions.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/DiagnosticInfo.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

// What -Rpass=, -Rpass-missed= and the like match.
static const char *const RemarkPassName = PassName.data();

bool llvm::inlinerecursion::areRemarksEnabled(const Module &M) {
  return isPlanWritten() || OptimizationRemarkEmitter::allowExtraAnalysis(
                                M.getContext(), RemarkPassName);
}

void llvm::inlinerecursion::emitAnalysis(
    InlineRecursion::InlineRecursionCosting &Costing) {
  using ore::NV;
  Function &F = *Costing.F;
  OptimizationRemarkEmitter ORE(&F);
  if (!ORE.allowExtraAnalysis(RemarkPassName))
    return;
  OptimizationRemarkAnalysis Remark(RemarkPassName, "Costing", &F);
  Remark << "'" << NV("Callee", &F) << "' has "
         << NV("Blocks", Costing.NumOfBlocks) << " blocks, "
         << NV("Instructions", Costing.NumOfInsts) << " instructions, "
         << NV("Branches", Costing.NumOfBranches) << " branches, "
         << NV("Calls", Costing.NumOfFunctionCalls) << " calls, "
         << NV("SelfCalls", Costing.NumOfRecursiveCalls) << " self calls, "
         << NV("CallSites", Costing.NumOfCandidateFunCallSiteInMod)
         << " call sites in the module";
  if (const auto *Depth =
          cast_or_null<SCEVConstant>(Costing.estimateRecursionDepth()))
    Remark << ", recursion depth "
           << NV("Depth", unsigned(Depth->getAPInt().getZExtValue()));
  if (const auto Estimate = Costing.estimateInlineBenefit())
    Remark << ", benefit " << NV("Benefit", unsigned(Estimate->Benefit))
           << " against " << NV("Limit", Estimate->Limit);
  ORE.emit(Remark);
}

/// Puts the reason in \p V, and what can be done about it, into \p Remark.
template <typename RemarkT>
static void appendReason(RemarkT &Remark, const Verdict &V) {
  for (const Verdict::Argument &Piece : V.Message)
    Remark << Piece;
  if (!V.Remedy.empty())
    Remark << "; " << ore::NV("Remedy", V.Remedy);
}

template <typename RemarkT>
static RemarkT buildRemark(Function &F, const Verdict &V, StringRef Outcome) {
  RemarkT Remark(RemarkPassName, V.Name, &F);
  Remark << "'" << ore::NV("Callee", &F) << "' " << Outcome;
  appendReason(Remark, V);
  return Remark;
}

void llvm::inlinerecursion::emitRefusalAnalysis(Function &F, const Verdict &V) {
  OptimizationRemarkEmitter ORE(&F);
  auto Remark =
      buildRemark<OptimizationRemarkAnalysis>(F, V, "refused by the pass: ");
  ORE.emit(Remark);
}

void llvm::inlinerecursion::emitNoStates(Function &F, const Verdict &Why) {
  OptimizationRemarkEmitter ORE(&F);
  auto Remark = buildRemark<OptimizationRemarkAnalysis>(
      F, Why, "has no copies for constants: ");
  ORE.emit(Remark);
}

/// Warns that \p Wanted of \p F are not built, for the reason in \p Why.
static void warn(Function &F, const Twine &Wanted, StringRef Verb,
                 const Verdict &Why) {
  const DISubprogram *Place = F.getSubprogram();
  DiagnosticInfoOptimizationFailure Warning(RemarkPassName, "Request",
                                            Place ? DiagnosticLocation(Place)
                                                  : DiagnosticLocation(),
                                            &F.getEntryBlock());
  Warning << "the " << Wanted.str() << " that '" << ore::NV("Callee", &F)
          << "' asks for " << Verb << " not built: ";
  appendReason(Warning, Why);
  F.getContext().diagnose(Warning);
}

void llvm::inlinerecursion::tellDiscardedProfile(Function &F,
                                                 StringRef Origin) {
  const std::string Text =
      ("the profile of '" + Origin +
       "' was discarded, which was another function when it was instrumented: "
       "compile both times at the same -O level and with the same options of "
       "the plugin")
          .str();
  if (F.hasComdat() || F.hasWeakLinkage() ||
      F.hasAvailableExternallyLinkage()) {
    OptimizationRemarkEmitter ORE(&F);
    ORE.emit(OptimizationRemarkMissed(RemarkPassName, "ProfileDiscarded", &F)
             << Text);
    return;
  }
  const std::string Warning = "InlineRecursion: " + Text;
  F.getContext().diagnose(DiagnosticInfoPGOProfile(
      F.getParent()->getName().data(), Warning, DS_Warning));
}

void llvm::inlinerecursion::warnAboutRequest(Function &F, const Verdict &Why) {
  if (asksForRing(F))
    warn(F, "ring of copies", "is", Why);
}

void llvm::inlinerecursion::warnAboutCopies(Function &F, const Verdict &Why) {
  const StringRef Count = F.getFnAttribute(CopiesMark).getValueAsString();
  warn(F, Count.empty() ? "copies" : (Count + " copies").str(), "are", Why);
}

void llvm::inlinerecursion::warnAboutPlan(Function &F, const Verdict &Why) {
  const std::string Plan = getPlan(F)->str();
  const StringRef Origin = getPlanOrigin(F);
  const std::string Place = Origin.empty() ? "" : (" (" + Origin + ")").str();
  warn(F, "plan '" + Plan + "'" + Place, "is", Why);
}

void llvm::inlinerecursion::warnAboutMalformedPlan(Function &F,
                                                   StringRef Problem) {
  warn(F, "plan", "is", refuse("PlanMalformed") << Problem);
}

void llvm::inlinerecursion::refuseCopies(Function &F, const Verdict &Why) {
  warnAboutCopies(F, Why);
  F.removeFnAttr(CopiesMark);
}

void llvm::inlinerecursion::emitRemark(Function &F, const Verdict &V,
                                       bool IsPart) {
  addDecision(F, V, IsPart);
  OptimizationRemarkEmitter ORE(&F);
  if (V.Accepted) {
    auto Remark = buildRemark<OptimizationRemark>(F, V, V.Outcome);
    Remark << ore::setExtraArgs();
    if (none_of(V.Message, [](const Verdict::Argument &Piece) {
          return Piece.Key == "Growth";
        }))
      Remark << ore::NV("Growth", V.Growth);
    if (!V.Plan.empty())
      Remark << ore::NV("Plan", V.Plan);
    for (const Verdict::Argument &Piece : V.RecordOnly)
      Remark << Piece;
    ORE.emit(Remark);
  } else {
    auto Remark = buildRemark<OptimizationRemarkMissed>(F, V, V.Outcome);
    ORE.emit(Remark);
  }
}
