//===- Driver.cpp - The driver of the pass, set up ------------------------===//

#include "plugin/ir/Driver.h"
#include "plugin/ir/PassOption.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Dominators.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

Driver::Driver(FunctionAnalysisManager &FAM, unsigned Level,
               unsigned LongestRing)
    : EvolutionGetter([&FAM](Function &F) {
        return &FAM.getResult<ScalarEvolutionAnalysis>(F);
      }),
      TreeGetter([&FAM](Function &F) {
        return &FAM.getResult<DominatorTreeAnalysis>(F);
      }) {
  SpecializeSeen = false;
  SpecialDepthLimit = LongestRing;
  OptLevel = Level;
  CloneCount = 0;
  GetSE = EvolutionGetter;
  GetDT = TreeGetter;
}

SmallVector<Function *, 4> Driver::buildCopies(Function &F, unsigned Count,
                                               bool AsRing) {
  const PassOptionScope Depth(DepthOption, Count);
  SmallVector<Function *, 4> Copies;
  for (unsigned Level = 0; Level != Count; ++Level)
    transformInlineRecursion(&F, Level, Copies, /*SpecializeAllowed=*/AsRing);
  return Copies;
}
