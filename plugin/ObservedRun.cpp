//===- ObservedRun.cpp - One run of the pass, with its reasons ------------===//

#include "ObservedRun.h"
#include "../host/FunctionSpecializeAction.h"
#include "CloneChain.h"
#include "Requests.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

static Verdict describeRing(const CloneChain &Ring) {
  const Attribute Request =
      Ring.Origin->getFnAttribute("specialize-inline-recursion-function");
  Verdict V(true, "Chained");
  V << NV("Shape", "ring") << " of "
    << NV("Copies", unsigned(Ring.Copies.size()))
    << (Ring.Copies.size() == 1 ? " copy" : " copies")
    << (Request.getValueAsString() == FoundRequest ? ", without being asked"
                                                   : ", as requested");
  return V;
}

static Verdict describeRefusedRing() {
  Verdict V(false, "CloneLimit");
  V << "the ring that it requests would exceed the limit of "
    << NV("Limit", getPassOption("maximum-clone-limit-inline-recursion"))
    << " copies per module";
  return V;
}

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

  InlineRecursion Driver;
  auto GetSE = [&FAM](Function &F) {
    return &FAM.getResult<ScalarEvolutionAnalysis>(F);
  };
  auto GetDT = [&](Function &F) {
    auto *DT = &FAM.getResult<DominatorTreeAnalysis>(F);
    if (Uncosted.remove(&F)) {
      InlineRecursion::InlineRecursionCosting Costing(&F, GetSE(F), DT,
                                                      Driver.OptLevel);
      Costing.analyzeFunction();
      Observe(F, &Costing, judgeCosting(Costing, Driver.CloneCount));
    }
    return DT;
  };
  Driver.SpecializeSeen = false;
  Driver.SpecialDepthLimit = getPassOption("special-inline-recursion-depth");
  Driver.OptLevel = Level;
  Driver.GetSE = GetSE;
  Driver.GetDT = GetDT;
  const bool Changed = Driver.processModule(M);

  for (const CloneChain &Chain : findChains(M, LastBefore))
    if (Uncosted.remove(Chain.Origin))
      Observe(*Chain.Origin, nullptr, describeRing(Chain));
  for (Function *F : Uncosted)
    Observe(*F, nullptr, describeRefusedRing());
  return Changed;
}
