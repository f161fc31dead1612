//===- LoopHints.cpp - Unrolling of loops around chained calls ------------===//

#include "LoopHints.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Function.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Transforms/Utils/LoopUtils.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

// Prototype values; see the sweep.
static cl::opt<unsigned> UnrollLimit(
    "inlinerecursion-unroll-limit", cl::init(1000), cl::Hidden,
    cl::desc("Largest size, in instructions, to which a loop of constant trip "
             "count in a copy of a recursive function is unrolled"));

PreservedAnalyses LoopHintsPass::run(Loop &L, LoopAnalysisManager &,
                                     LoopStandardAnalysisResults &AR,
                                     LPMUpdater &) {
  if (!L.getHeader()->getParent()->hasFnAttribute("llvm.recurse.clone"))
    return PreservedAnalyses::all();
  const unsigned TripCount = AR.SE.getSmallConstantTripCount(&L);
  if (TripCount < 2)
    return PreservedAnalyses::all();
  unsigned Size = 0;
  for (BasicBlock *BB : L.blocks())
    Size += BB->sizeWithoutDebug();
  if (uint64_t(Size) * TripCount > UnrollLimit)
    return PreservedAnalyses::all();
  if (!getBooleanLoopAttribute(&L, "llvm.loop.unroll.full") &&
      !getBooleanLoopAttribute(&L, "llvm.loop.unroll.disable"))
    addStringMetadataToLoop(&L, "llvm.loop.unroll.full", 1);
  return PreservedAnalyses::all();
}
