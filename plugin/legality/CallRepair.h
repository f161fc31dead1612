//===- CallRepair.h - What rewritten calls have lost ------------*- C++ -*-===//
//
/// \file
/// The pass rewrites a call into a plain one with the same arguments.  Most of
/// what is dropped on the way is advice; this pass, which runs right behind it,
/// puts back what is not.
///
///  - How arguments travel (by value, in a register, extended): LLVM reads that
///    partly off the callee and partly off the call, and the two must agree.  A
///    call without `byval` that is marked `tail` is taken not to read the
///    caller's stack, and the stores that fill the argument are deleted.
///  - Whether a call may be inlined: copies are `alwaysinline`, for which the
///    inliner does not ask whether caller and callee agree in target features,
///    sanitizers or floating-point rules.  A call from a function that does not
///    is marked `noinline`.
///
/// It also takes back the marks of the protection (see Protection.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_CALLREPAIR_H
#define INLINERECURSION_PLUGIN_LEGALITY_CALLREPAIR_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Completes the calls of copies.  Changes nothing but attributes.
class CallRepairPass : public PassInfoMixin<CallRepairPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  static StringRef name() { return "InlineRecursionCallRepairPass"; }
  /// The module is not correct without it.
  static bool isRequired() { return true; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_CALLREPAIR_H
