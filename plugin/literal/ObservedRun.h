//===- ObservedRun.h - One run of the pass, with its reasons ----*- C++ -*-===//
//
/// \file
/// The pass decides function by function, and every chain that it builds
/// changes the calls that later decisions count.  Reasons can therefore neither
/// be worked out before the run nor after it.  The driver asks for a function's
/// dominator tree just before it costs that function: that is where an observer
/// looks in.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_OBSERVEDRUN_H
#define INLINERECURSION_PLUGIN_LITERAL_OBSERVEDRUN_H

#include "plugin/literal/Reasons.h"
#include "llvm/ADT/STLFunctionalExtras.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Called once for every directly recursive function: with its costing record
/// where it was costed (null where it was refused before, or became a ring),
/// and with what was decided about it.
using DecisionObserver = function_ref<void(
    Function &F, InlineRecursion::InlineRecursionCosting *, const Verdict &)>;

/// Does what InlineRecursionPass(\p Level) does to \p M, and tells
/// \p Observe about it.  Returns true if \p M was changed.
bool runObserved(Module &M, FunctionAnalysisManager &FAM, int Level,
                 DecisionObserver Observe);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_OBSERVEDRUN_H
