//===- EarlySums.h - Fewer values across the calls of a ring ----*- C++ -*-===//
//
/// \file
/// A recursion that adds up, r += value + f(child), has both r and the value in
/// registers while f runs, because reassociation puts the result of the call
/// last and leaves the sum of the others where it is used.  One value less is
/// no matter for one function.  With the copies of a ring merged into one, it
/// is one register for each of them.
///
/// This pass runs last, on the functions that copies were merged into, and
/// makes such sums where their operands are: an operation with two operands
/// that end with it moves up to the later of the two.  It does so in the same
/// loop, and only where the operation is executed anyway.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LOOPS_EARLYSUMS_H
#define INLINERECURSION_PLUGIN_LOOPS_EARLYSUMS_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class EarlySumsPass : public PassInfoMixin<EarlySumsPass> {
public:
  PreservedAnalyses run(Function &F, FunctionAnalysisManager &FAM);
  static StringRef name() { return "InlineRecursionEarlySumsPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LOOPS_EARLYSUMS_H
