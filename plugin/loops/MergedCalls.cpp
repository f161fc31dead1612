//===- MergedCalls.cpp - Equal calls in a ring become one -----------------===//

#include "plugin/loops/MergedCalls.h"
#include "plugin/ir/Names.h"
#include "llvm/Transforms/InstCombine/InstCombine.h"
#include "llvm/Transforms/Scalar/EarlyCSE.h"
#include "llvm/Transforms/Scalar/GVN.h"
#include "llvm/Transforms/Scalar/JumpThreading.h"
#include "llvm/Transforms/Scalar/SimplifyCFG.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Most instructions that are copied to be rid of one test: what the largest
/// body of a ring has, and its guard.
static constexpr unsigned MaxCopiedSize = 100;
static constexpr unsigned Rounds = 2;

PreservedAnalyses MergedCallsPass::run(Function &F,
                                       FunctionAnalysisManager &FAM) {
  if (!F.hasFnAttribute(MergesMark))
    return PreservedAnalyses::all();
  FunctionPassManager Merge;
  for (unsigned Round = 0; Round != Rounds; ++Round) {
    // Tests become one value first.
    Merge.addPass(GVNPass());
    Merge.addPass(InstCombinePass());
    Merge.addPass(JumpThreadingPass(MaxCopiedSize));
    Merge.addPass(SimplifyCFGPass());
  }
  // Where a body is long, global value numbering does not look back as far as
  // calls stand apart.
  Merge.addPass(EarlyCSEPass(/*UseMemorySSA=*/true));
  return Merge.run(F, FAM);
}

void MergedCallsPass::printPipeline(raw_ostream &OS,
                                    function_ref<StringRef(StringRef)>) {
  OS << MergedCallsName;
}
