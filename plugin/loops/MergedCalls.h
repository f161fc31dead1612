//===- MergedCalls.h - Equal calls in a ring become one ---------*- C++ -*-===//
//
/// \file
/// In a ring that was built to merge equal calls (marked by rewrite/Ring.cpp),
/// the same test stands in front of several pieces:
///
///     Row + 2 == Rows? ---> 0              Row + 2 == Rows? ---> 0
///       |                                    |
///     f(Row + 2, P), f(Row + 2, P + 1)     f(Row + 2, P + 1), f(Row + 2, P +
///     2)
///
/// Both are made or none, but f(Row + 2, P + 1) does not stand on the way to
/// its twin as long as there are two tests.  LLVM's jump threading makes one of
/// them by copying what stands between, up to six instructions; here that is
/// all of a body, and worth it: the twins are found then, and each level that a
/// ring is longer adds one call in place of twice as many.
///
/// Stands behind the inliner, where the copies are one function.  It takes two
/// rounds, as a value that has become one makes more of them equal.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LOOPS_MERGEDCALLS_H
#define INLINERECURSION_PLUGIN_LOOPS_MERGEDCALLS_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class MergedCallsPass : public PassInfoMixin<MergedCallsPass> {
public:
  PreservedAnalyses run(Function &F, FunctionAnalysisManager &FAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  // PassManager's name for adaptors: what runs in here is reported by itself.
  static StringRef name() { return "InlineRecursionMergedCallsPassAdaptor"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LOOPS_MERGEDCALLS_H
