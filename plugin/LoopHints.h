//===- LoopHints.h - Unrolling of loops around chained calls ----*- C++ -*-===//
#ifndef INLINERECURSION_PLUGIN_LOOPHINTS_H
#define INLINERECURSION_PLUGIN_LOOPHINTS_H

#include "llvm/Analysis/LoopAnalysisManager.h"
#include "llvm/IR/PassManager.h"

namespace llvm {

class Loop;
class LPMUpdater;

namespace inlinerecursion {

class LoopHintsPass : public PassInfoMixin<LoopHintsPass> {
public:
  PreservedAnalyses run(Loop &L, LoopAnalysisManager &AM,
                        LoopStandardAnalysisResults &AR, LPMUpdater &U);
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LOOPHINTS_H
