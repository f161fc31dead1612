//===- Summary.h - One line for each module ---------------------*- C++ -*-===//
//
/// \file
/// An analysis remark that counts what was decided about a module:
///
///   7 recursive functions: 3 rebuilt, 4 not; +412 instructions
///
/// They are written down where they are taken (Decisions.h).  Where no second
/// look follows, this stands at the end of what runs in front of the inliner.
///
/// Growth is the sum of what the remarks say, which is an estimate.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_SUMMARY_H
#define INLINERECURSION_PLUGIN_TELL_SUMMARY_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Has the last word: writes the plan, too, where one is wanted (PlanRecord.h),
/// and leaves nothing of either in the module.
class SummaryPass : public PassInfoMixin<SummaryPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionSummaryPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_SUMMARY_H
