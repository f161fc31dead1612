//===- RingInlining.h - How much of a ring is inlined -----------*- C++ -*-===//
//
/// \file
/// The pass marks all links of a ring but the last to be inlined, whatever that
/// costs: with two self calls per body the code doubles with every link.  This
/// pass runs behind it and plans the inlining anew, with a limit.  Before that
/// it aligns the copies, if it can: each stands for one remainder then, and is
/// smaller (RingAlignment.h).  A ring that the source asks for gets as many
/// copies as its largest remainder has values, whichever the pass has granted
/// it for.
///
/// What limit pays depends on the shape (benchmarks/kernels/ring_*_opaque,
/// where the start of the recursion is unknown):
///
///   - One self call: the code grows with the number of copies only, and the
///     longer the inlined stretch the better.  Kernel: machine.
///   - Several: more than 300 instructions gain nothing.  Kernel: puzzle9.
///   - A loop of constant trip count around the self call: the unroller takes
///     such a loop apart as long as its body is small, which is worth more than
///     inlining.  Kernel: knight.
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
