//===- Summary.h - One line for each module ---------------------*- C++ -*-===//
//
/// \file
/// An analysis remark that counts what was decided about a module:
///
///   7 recursive functions: 3 rebuilt, 4 not; +412 instructions
///
/// Decisions are taken in several passes in front of the inliner and behind it,
/// so they are written down in between, as named metadata:
///
///   PluginPass --> RingInliningPass --> AutoPass --> (inliner) -->
///     begins         counts               counts
///
///   BehindInlinerPass --> SummaryPass
///     counts                tells, and takes the metadata away
///
/// The last decision about a function is the one that counts.  Where no second
/// look follows, SummaryPass stands at the end of what runs in front of the
/// inliner.  One module and one compilation have one line; in a link-time
/// optimisation compiler and linker are two, and what the first one has rebuilt
/// is not counted by the second.
///
/// Nothing is begun, and nothing written, where nobody listens.  Passes that
/// are put together by hand have no summary unless PluginPass begins it.
///
/// Growth is the sum of what the remarks say, which is an estimate.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_SUMMARY_H
#define INLINERECURSION_PLUGIN_TELL_SUMMARY_H

#include "plugin/tell/Verdict.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// From now on, the decisions about functions of \p M are written down.
void beginSummary(Module &M);

/// Writes down the decision \p V about \p F, if a summary was begun.  \p
/// IsPart: F is part of another function, and only its growth counts.
void countDecision(const Function &F, const Verdict &V, bool IsPart);

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
