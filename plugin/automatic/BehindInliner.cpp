//===- BehindInliner.cpp - Recursion that inlining uncovers ---------------===//

#include "plugin/automatic/BehindInliner.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/CallRepair.h"
#include "plugin/legality/Protection.h"
#include "plugin/plan/Planned.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Remarks.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Transforms/IPO/AlwaysInliner.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static bool isUncovered(const Function &F) {
  return !F.isDeclaration() && !hasCloneMark(F) && !isSeenByAuto(F) &&
         isDirectlyRecursive(F);
}

/// Has the functions of \p M that rings were built of now merged into
/// \p OldCopies, which were there before, if each adds no more than
/// \p MaxGrowth instructions.  Building a tree calls what destroys it, most
/// often for a null pointer.  Returns the changed ones.
static SmallPtrSet<Function *, 8>
inlineIntoCopies(Module &M, const SmallPtrSetImpl<Function *> &OldCopies,
                 unsigned MaxGrowth) {
  SmallPtrSet<Function *, 8> Changed;
  for (Function &F : M) {
    if (!hasCloneMark(F) || OldCopies.contains(&F))
      continue;
    SmallVector<CallBase *, 8> Calls = findCallsOf<CallBase>(F);
    erase_if(Calls, [&OldCopies](const CallBase *Call) {
      return !OldCopies.contains(Call->getFunction());
    });
    if (Calls.size() * uint64_t(getCodeSize(F)) > MaxGrowth)
      continue;
    for (CallBase *Call : Calls) {
      Call->addFnAttr(Attribute::AlwaysInline);
      Changed.insert(Call->getFunction());
    }
  }
  return Changed;
}

static PreservedAnalyses buildUncovered(Module &M, ModuleAnalysisManager &MAM,
                                        Bounds Limits,
                                        OptimizationLevel Level) {
  if (none_of(M, isUncovered))
    return PreservedAnalyses::all();

  SmallPtrSet<Function *, 16> OldCopies;
  for (Function &F : M)
    if (hasCloneMark(F))
      OldCopies.insert(&F);
  auto IsNewCopy = [&OldCopies](const Function &F) {
    return hasCloneMark(F) && !OldCopies.contains(&F);
  };

  beginLateLook(M);
  ModulePassManager Build;
  Build.addPass(ProtectionPass());
  Limits.InlinerFollows = false;
  Build.addPass(AutoPass(Limits));
  Build.addPass(CallRepairPass());
  const PreservedAnalyses Built = Build.run(M, MAM);
  if (none_of(M, IsNewCopy))
    return Built;

  const SmallPtrSet<Function *, 8> Callers =
      inlineIntoCopies(M, OldCopies, Limits.FunctionGrowth);
  ModulePassManager Merge;
  Merge.addPass(AlwaysInlinerPass(/*InsertLifetimeIntrinsics=*/true));
  Merge.run(M, MAM);

  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  FunctionPassManager Simplify =
      PassBuilder().buildFunctionSimplificationPipeline(
          Level, ThinOrFullLTOPhase::None);
  for (Function &F : M)
    if (IsNewCopy(F) || Callers.contains(&F))
      FAM.invalidate(F, Simplify.run(F, FAM));
  return PreservedAnalyses::none();
}

PreservedAnalyses BehindInlinerPass::run(Module &M,
                                         ModuleAnalysisManager &MAM) {
  PreservedAnalyses PA = buildUncovered(M, MAM, Limits, Level);
  tellUndecided(M);
  for (Function &F : M)
    if (F.hasFnAttribute(CopiesMark))
      refuseCopies(F, refuse("NotRecursive") << "it does not call itself");
  // No analysis rests on the marks.
  forgetSeen(M);
  return PA;
}

void BehindInlinerPass::printPipeline(raw_ostream &OS,
                                      function_ref<StringRef(StringRef)>) {
  OS << BehindInlinerName << "<" << Limits << ">";
}
