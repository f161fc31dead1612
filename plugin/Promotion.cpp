//===- Promotion.cpp - Arguments passed by reference ----------------------===//

#include "Promotion.h"
#include "Verdict.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/CGSCCPassManager.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Transforms/IPO/ArgumentPromotion.h"
#include "llvm/Transforms/IPO/FunctionAttrs.h"
#include "llvm/Transforms/Scalar/SROA.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static bool mayBePromoted(const Function &F) {
  // Copies are made of what was promoted.
  return !F.isDeclaration() && F.hasLocalLinkage() &&
         !F.hasFnAttribute("llvm.recurse.clone") &&
         any_of(F.args(),
                [](const Argument &A) { return A.getType()->isPointerTy(); }) &&
         isDirectlyRecursive(F);
}

PreservedAnalyses PromotionPass::run(Module &M, ModuleAnalysisManager &MAM) {
  if (none_of(M, mayBePromoted))
    return PreservedAnalyses::all();

  CGSCCPassManager PerSCC;
  PerSCC.addPass(PostOrderFunctionAttrsPass());
  PerSCC.addPass(ArgumentPromotionPass());
  ModulePassManager Promote;
  Promote.addPass(createModuleToPostOrderCGSCCPassAdaptor(std::move(PerSCC)));
  Promote.addPass(
      createModuleToFunctionPassAdaptor(SROAPass(SROAOptions::ModifyCFG)));
  return Promote.run(M, MAM);
}
