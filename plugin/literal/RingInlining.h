//===- RingInlining.h - How much of a ring is inlined -----------*- C++ -*-===//
//
/// \file
/// The pass marks all links of a ring but the last to be inlined, whatever that
/// costs: with two self calls per body the code doubles with every link.  This
/// pass runs behind it and plans the inlining anew, with a limit.  Before that
/// it aligns the copies, if it can: each stands for one remainder then, and is
/// smaller (RingAlignment.h).
///
/// What limit pays depends on the shape (benchmarks/kernels/ring_*, with the
/// start of the recursion unknown, run time relative to plain clang):
///
///   - One self call: the code grows with the number of copies only, and the
///     longer the inlined stretch the better (a state machine runs in 0.65 at
///     1500 instructions, in 0.77 at 300).
///   - Several: 300 instructions run a puzzle search in 0.80, more gains
///     nothing.
///   - A loop of constant trip count around the self call: the unroller takes
///     such a loop apart as long as its body is small, which is worth more than
///     inlining (a knight's tour runs in 0.86 at 100 instructions, in 1.13 at
///     300).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_RINGINLINING_H
#define INLINERECURSION_PLUGIN_LITERAL_RINGINLINING_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Changes the copies in rings that can be aligned, and how those are entered;
/// of others nothing but the inlining attributes.
class RingInliningPass : public PassInfoMixin<RingInliningPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  static StringRef name() { return "InlineRecursionRingInliningPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_RINGINLINING_H
