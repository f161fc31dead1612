//===- BehindInliner.h - Recursion that inlining uncovers -------*- C++ -*-===//
//
/// \file
/// Functions that call each other in a circle become one that calls itself once
/// the inliner has been there.  Destructors of trees are like that: the owning
/// pointer calls its deleter, which calls the node's destructor, which calls
/// the owning pointer's again, all of them small and from a library.
///
/// This pass stands behind the simplification pipeline, in front of the loop
/// optimisations, and is AutoPass once more, on functions that are recursive
/// only since then, and on those that had no test in front of their self calls
/// as long as the test was hidden in calls of small functions.  As no inliner
/// follows, it has LLVM's AlwaysInliner merge the copies, and runs the
/// simplification pipeline on the function that they are merged into.  Where
/// there is no such recursion, it looks at the calls of each function and ends.
///
/// What both runs add counts against the same bound on the module's growth.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_BEHINDINLINER_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_BEHINDINLINER_H

#include "plugin/automatic/AutoPass.h"
#include "llvm/IR/PassManager.h"
#include "llvm/Passes/OptimizationLevel.h"

namespace llvm {
namespace inlinerecursion {

class BehindInlinerPass : public PassInfoMixin<BehindInlinerPass> {
public:
  /// \p Level, above O0, is the one that merged copies are simplified at.
  explicit BehindInlinerPass(Bounds Limits,
                             OptimizationLevel Level = OptimizationLevel::O3)
      : Limits(Limits), Level(Level) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  // PassManager's name for adaptors: what runs in here is reported by itself.
  static StringRef name() { return "InlineRecursionBehindInlinerPassAdaptor"; }

private:
  Bounds Limits;
  OptimizationLevel Level;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_BEHINDINLINER_H
