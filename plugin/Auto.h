//===- Auto.h - Rings that nobody asked for ---------------------*- C++ -*-===//
//
/// \file
/// Runs behind the pass on the directly recursive functions that it did not
/// chain, asks AutoPolicy about each, and builds what that says by the driver's
/// own transformation.  What the pass makes of it is completed here:
///
///   caller            caller
///     |                 |
///     v                 v
///     F <-+             guard <-----------------------+   (alwaysinline)
///     |   |             |                             |
///     +---+             v                             |
///                       F.recurse.clone               |   (noinline)
///                       |          |                  |
///                       v          |                  |
///                       F.recurse.clone.1             |   (alwaysinline)
///                       |        | |                  |
///                       |        v v                  |
///                       |  F.recurse.clone.2 ---------+   (alwaysinline)
///                       +-----------------------------+
///
/// All copies but the first are inlined, so one fused function is left.  Unlike
/// the rings that are requested, it is not inlined into those who enter it.
/// The function itself keeps its body, for whoever calls it by other means or
/// where there are many who do, and enters the ring as everybody else.
/// `invoke`, which the pass leaves alone, is linked like `call`.
///
/// Legality is what the pass goes by: protection (Protection.h) hides from the
/// driver what must not be copied, and lasts until behind this pass.
///
/// Growth is bounded for each function, and for the module by the larger of an
/// absolute number, which is what makes a small program fast, and a share of
/// its size.  Below -O3 the number is a sixteenth: the time that a compilation
/// takes grows as the code does.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTO_H
#define INLINERECURSION_PLUGIN_AUTO_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// How far a run may go; by default, what the options say.
struct AutoLimits {
  /// Most copies in a ring.
  unsigned Copies;
  /// Most that one function, and the module, grow by (instructions).
  unsigned FunctionGrowth;
  unsigned ModuleGrowth;

  AutoLimits();
};

/// Is `inlinerecursion-auto` given on the command line, or left at true?
bool isAutoEnabled();

class AutoPass : public PassInfoMixin<AutoPass> {
public:
  explicit AutoPass(AutoLimits Limits) : Limits(Limits) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionAutoPass"; }

private:
  AutoLimits Limits;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTO_H
