//===- PluginPass.cpp - The literal pass, told about ----------------------===//

#include "plugin/literal/PluginPass.h"
#include "pass/InlineRecursion.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/legality/Protection.h"
#include "plugin/literal/ObservedRun.h"
#include "plugin/literal/Reasons.h"
#include "plugin/literal/RefusedRequests.h"
#include "plugin/tell/Decisions.h"
#include "plugin/tell/Remarks.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

void llvm::inlinerecursion::printWithLevel(raw_ostream &OS, StringRef Name,
                                           int Level) {
  OS << Name;
  if (Level)
    OS << "<level=" << Level << ">";
}

PreservedAnalyses PluginPass::run(Module &M, ModuleAnalysisManager &MAM) {
  SingleRun Alone;
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  auto EmitRemark = [this](Function &F,
                           InlineRecursion::InlineRecursionCosting *Costing,
                           const Verdict &V) {
    // The automatic policy decides about it.
    if (Next.Auto && (V.Name == "Planned" || isLeftToStates(F)))
      return;
    if (Costing)
      emitAnalysis(*Costing);
    if (Costing && !V.Accepted &&
        (Next.Auto || (Next.RingInlining && mayBuildRefused(F))))
      emitRefusalAnalysis(F, V);
    else if (Costing || !V.Accepted || !Next.RingInlining)
      emitRemark(F, V);
  };
  PreservedAnalyses PA = PreservedAnalyses::none();
  if (Next.Summary && areRemarksEnabled(M))
    beginDecisions(M);
  if (!areRemarksEnabled(M))
    PA = InlineRecursionPass(Level).run(M, MAM);
  else if (!runObserved(M, FAM, Level, EmitRemark))
    PA = PreservedAnalyses::all();
  if (Next.RingInlining && buildRefusedRings(M, FAM, Next.Auto))
    PA = PreservedAnalyses::none();
  return PA;
}

void PluginPass::printPipeline(raw_ostream &OS,
                               function_ref<StringRef(StringRef)>) {
  printWithLevel(OS, PassName, Level);
}
