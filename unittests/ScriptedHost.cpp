//===- ScriptedHost.cpp - Collaborators that follow a script --------------===//

#include "ScriptedHost.h"
#include "host/FunctionSpecializeAction.h"
#include "host/RecursionDepthEstimator.h"

using namespace llvm;
using namespace llvm::unittest;

HostScript *llvm::unittest::CurrentScript = nullptr;

RecursionDepthEstimator::RecursionDepthEstimator(Function *F,
                                                 ScalarEvolution *SE,
                                                 DominatorTree *DT)
    : F(F), SE(SE), DT(DT) {}

bool RecursionDepthEstimator::canEstimateRecursionDepth() {
  CurrentScript->Log.push_back("can " + F->getName().str());
  CurrentScript->SE = SE;
  CurrentScript->DT = DT;
  if (!CurrentScript->CanEstimate)
    return false;
  if (CurrentScript->CallSites)
    for (CallInst *Call : CurrentScript->CallSites(*F))
      CallSites.push_back(Call);
  return true;
}

std::pair<const SCEV *, const SCEV *>
RecursionDepthEstimator::identifyRecursionDepthForCallSite(CallInst *Call) {
  CurrentScript->Log.push_back("site " + Call->getName().str());
  return CurrentScript->DepthOf(*SE, *Call);
}

std::map<Function *, std::set<CallInst *>>
FunctionSpecializeAction::selectCI(Module &M, bool Flag) {
  CurrentScript->Log.push_back("select " + M.getModuleIdentifier() +
                               (Flag ? " true" : " false"));
  return CurrentScript->Selected;
}

bool FunctionSpecializeAction::transform(
    Module &M, std::map<Function *, std::set<CallInst *>> &Selected,
    const std::set<CallInst *> &Excluded) {
  CurrentScript->Log.push_back("transform " + M.getModuleIdentifier());
  CurrentScript->SelectedAsPassed = Selected;
  CurrentScript->ExcludedAsPassed = Excluded;
  return CurrentScript->TransformChanged;
}
