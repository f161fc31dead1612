//===- ObservedRun.cpp - One run of the pass, with its reasons ------------===//

#include "plugin/literal/ObservedRun.h"
#include "host/FunctionSpecializeAction.h"
#include "plugin/ir/CloneChain.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/PassOption.h"
#include "plugin/literal/Requests.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

bool llvm::inlinerecursion::runObserved(Module &M, FunctionAnalysisManager &FAM,
                                        int Level, DecisionObserver Observe) {
  if (M.empty())
    return false;

  // Requests that the gate accepts are never costed; what became of them is
  // seen afterwards.
  SetVector<Function *> Uncosted;
  for (Function &F : M) {
    if (F.isDeclaration() || !isDirectlyRecursive(F))
      continue;
    if (std::optional<Verdict> V = judgeFilter(F))
      Observe(F, nullptr, *V);
    else
      Uncosted.insert(&F);
  }
  Function *LastBefore = &M.getFunctionList().back();

  Driver Observed(FAM, Level, getPassOption(LongestRingOption));
  auto GetTreeAndObserve = [&](Function &F) {
    auto *DT = &FAM.getResult<DominatorTreeAnalysis>(F);
    if (Uncosted.remove(&F)) {
      InlineRecursion::InlineRecursionCosting Costing(&F, Observed.GetSE(F), DT,
                                                      Observed.OptLevel);
      Costing.analyzeFunction();
      Observe(F, &Costing, judgeCosting(Costing, Observed.CloneCount));
    }
    return DT;
  };
  Observed.GetDT = GetTreeAndObserve;
  const bool Changed = Observed.processModule(M);

  for (const CloneChain &Chain : findChains(M, LastBefore))
    if (Uncosted.remove(Chain.Origin))
      Observe(*Chain.Origin, nullptr, describeRing(Chain));
  for (Function *F : Uncosted)
    Observe(*F, nullptr, explainRefusedRing(*F));
  return Changed;
}
