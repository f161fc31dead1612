//===- PluginPass.cpp - The literal pass, told about ----------------------===//

#include "plugin/literal/PluginPass.h"
#include "pass/InlineRecursion.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/literal/ObservedRun.h"
#include "plugin/tell/Remarks.h"

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
  if (!areRemarksEnabled(M))
    return InlineRecursionPass(Level).run(M, MAM);

  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  auto EmitRemark = [this](Function &F,
                           InlineRecursion::InlineRecursionCosting *Costing,
                           const Verdict &V) {
    if (Costing)
      emitAnalysis(*Costing);
    if (Costing && !V.Accepted && Next.Auto)
      emitRefusalAnalysis(F, V);
    else if (Costing || !V.Accepted || !Next.RingInlining)
      emitRemark(F, V);
  };
  return runObserved(M, FAM, Level, EmitRemark) ? PreservedAnalyses::none()
                                                : PreservedAnalyses::all();
}

void PluginPass::printPipeline(raw_ostream &OS,
                               function_ref<StringRef(StringRef)>) {
  printWithLevel(OS, PassName, Level);
}
