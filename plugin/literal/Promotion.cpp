//===- Promotion.cpp - Arguments passed by reference ----------------------===//

#include "plugin/literal/Promotion.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/Hazards.h"
#include "plugin/literal/ValueArguments.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/CGSCCPassManager.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Transforms/IPO/ArgumentPromotion.h"
#include "llvm/Transforms/IPO/FunctionAttrs.h"
#include "llvm/Transforms/Scalar/EarlyCSE.h"
#include "llvm/Transforms/Scalar/SROA.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static bool mayBePromoted(const Function &F) {
  // Copies are made of what was promoted.
  return !F.isDeclaration() && F.hasLocalLinkage() && !hasCloneMark(F) &&
         any_of(F.args(),
                [](const Argument &A) { return A.getType()->isPointerTy(); }) &&
         isDirectlyRecursive(F);
}

namespace {
/// Runs passes on the components of the call graph that a function which may be
/// promoted is in.  All others it leaves alone: that is nearly all of a module.
class PromotablePass : public PassInfoMixin<PromotablePass> {
public:
  PreservedAnalyses run(LazyCallGraph::SCC &C, CGSCCAnalysisManager &CGAM,
                        LazyCallGraph &CG, CGSCCUpdateResult &UR) {
    if (none_of(C, [](LazyCallGraph::Node &N) {
          return mayBePromoted(N.getFunction());
        }))
      return PreservedAnalyses::all();
    CGSCCPassManager Promote;
    Promote.addPass(PostOrderFunctionAttrsPass());
    Promote.addPass(ArgumentPromotionPass());
    return Promote.run(C, CGAM, CG, UR);
  }
  static StringRef name() { return "InlineRecursionPromotablePassAdaptor"; }
};
} // namespace

/// Largest function of which one that takes values is made beside itself
/// (instructions).
static constexpr unsigned MaxCopiedSize = 2500;

/// Values behind one pointer may be pointers to the next.
static constexpr unsigned MaxRounds = 3;

static bool mayTakeValues(const Function &F) {
  return !F.isDeclaration() && !hasCloneMark(F) &&
         !F.hasFnAttribute(Attribute::AllocSize) &&
         any_of(F.args(),
                [](const Argument &A) { return A.getType()->isPointerTy(); }) &&
         isDirectlyRecursive(F) && getCodeSize(F) <= MaxCopiedSize &&
         !findReason(getHazards(), F) && !findWish(F);
}

/// Makes functions of \p M that take values of what they read through
/// pointers.  Returns true if there is any.
static bool passByValue(Module &M, FunctionAnalysisManager &FAM) {
  SmallVector<Function *, 4> Candidates;
  for (Function &F : M)
    if (mayTakeValues(F))
      Candidates.push_back(&F);
  bool Changed = false;
  for (Function *F : Candidates)
    for (unsigned Round = 0; F && Round != MaxRounds; ++Round) {
      const std::optional<ValuePassing> How = findValuePassing(*F);
      if (!How)
        break;
      Changed = true;
      FAM.clear(*F, F->getName());
      const PassedValues Passed = passValues(*F, *How);
      FunctionPassManager Simplify;
      Simplify.addPass(SROAPass(SROAOptions::ModifyCFG));
      Simplify.addPass(EarlyCSEPass());
      for (Function *Caller : Passed.Callers) {
        FAM.invalidate(*Caller, PreservedAnalyses::none());
        FAM.invalidate(*Caller, Simplify.run(*Caller, FAM));
      }
      F = Passed.Local;
    }
  return Changed;
}

PreservedAnalyses PromotionPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  const bool PassesValues = passByValue(M, FAM);
  SmallVector<std::pair<std::string, const FunctionType *>, 4> Promotable;
  for (const Function &F : M)
    if (mayBePromoted(F))
      Promotable.emplace_back(F.getName().str(), F.getFunctionType());
  if (Promotable.empty())
    return PassesValues ? PreservedAnalyses::none() : PreservedAnalyses::all();

  if (PassesValues)
    MAM.invalidate(M, PreservedAnalyses::none());
  ModulePassManager Promote;
  Promote.addPass(createModuleToPostOrderCGSCCPassAdaptor(PromotablePass()));
  PreservedAnalyses PA = Promote.run(M, MAM);

  // Variables of those who call, and of the function itself, that were in
  // memory only because their address was passed on.
  SmallPtrSet<Function *, 8> Callers;
  for (const auto &[Name, OldType] : Promotable) {
    const Function *F = M.getFunction(Name);
    if (!F || F->getFunctionType() == OldType)
      continue;
    for (CallBase *Call : findCallsOf<CallBase>(*F))
      Callers.insert(Call->getFunction());
  }
  for (Function *Caller : Callers)
    FAM.invalidate(*Caller, SROAPass(SROAOptions::ModifyCFG).run(*Caller, FAM));
  return PassesValues ? PreservedAnalyses::none() : PA;
}
