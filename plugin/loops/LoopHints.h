//===- LoopHints.h - Help for loops around chained calls --------*- C++ -*-===//
//
/// \file
/// Searches recurse inside loops: for each move, for each digit, for each
/// vertex.  Once a chain of copies is flattened, such a recursion is a nest of
/// loops, one per level, in a single function.  The optimizer's rules of thumb
/// were made for loops that people write, and fit this nest badly in three
/// ways:
///
///  - The innermost loops are short and their trip counts are constants now,
///    yet full unrolling stops at 300 instructions.  Unrolled, they lose their
///    indices, and the global state that they keep per level becomes values.
///  - A loop around a call looks long to the vectorizer once the call in it is
///    gone, although it makes a handful of trips.  Seen from the recursion, its
///    vector code is set up anew for nearly every leaf.
///  - What one level hands to the next (a running sum, a first index) is a
///    recurrence over all loops of the nest.  Loop strength reduction turns
///    every offset from it into an induction variable of its own, at every
///    level; the nest then does little but load and store spilled ones.
///
/// Three passes of a default pipeline deal with these.  They do not transform:
/// the first two attach loop metadata, which passes of LLVM act on as they do
/// on `#pragma clang loop`, and the last inserts `freeze`, which any value may
/// go through and which ScalarEvolution does not look through.
///
///   ChainLoopsPass       right after the chains are built, marks the loops
///                        around links; the mark survives inlining
///   LoopHintsPass        before full unrolling, asks for unrolling, and keeps
///                        the vectorizer out
///   CutRecurrencesPass   after the last loop pass of the pipeline, before the
///                        code generator's loop strength reduction
///
/// Growth is bounded: a loop is unrolled up to `inlinerecursion-unroll-limit`
/// instructions, all its inner loops included, and only after all of those are
/// gone.  What a chain adds to the program is at most that limit for each loop
/// of the function.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LOOPS_LOOPHINTS_H
#define INLINERECURSION_PLUGIN_LOOPS_LOOPHINTS_H

#include "llvm/Analysis/LoopAnalysisManager.h"
#include "llvm/IR/PassManager.h"

namespace llvm {

class Loop;
class LPMUpdater;

namespace inlinerecursion {

/// Marks the loops of functions with links (the function itself, its copies)
/// that contain a call of such a function.
class ChainLoopsPass : public PassInfoMixin<ChainLoopsPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  static StringRef name() { return "InlineRecursionChainLoopsPass"; }
};

/// Unrolling and vectorization of one loop.
class LoopHintsPass : public PassInfoMixin<LoopHintsPass> {
public:
  PreservedAnalyses run(Loop &L, LoopAnalysisManager &AM,
                        LoopStandardAnalysisResults &AR, LPMUpdater &U);
  static StringRef name() { return "InlineRecursionLoopHintsPass"; }
};

/// Ends, at each marked loop inside a marked loop, the recurrences that reach
/// in from the outer one.
class CutRecurrencesPass : public PassInfoMixin<CutRecurrencesPass> {
public:
  PreservedAnalyses run(Function &F, FunctionAnalysisManager &FAM);
  static StringRef name() { return "InlineRecursionCutRecurrencesPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LOOPS_LOOPHINTS_H
