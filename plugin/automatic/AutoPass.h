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
///     F <-+             F: the guard alone
///     |   |             |
///     +---+             |      F.recurse.guard <------+   (alwaysinline)
///                       v      v                      |
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
/// Of the function itself its first test is left and a call of the ring.  That
/// is little, and the inliner merges it into those who call where that pays.
/// Where there is no such test, the function keeps its body and enters the
/// ring, as those do who call it.  `invoke`, which the pass leaves alone, is
/// linked like `call`.
///
/// A chain, where the policy says so, is what the pass builds at level 0.
/// A leaf chain is one too, but it is the function itself that enters it, where
/// its counter tells how many levels are left:
///
///   caller
///     |
///     v                        n == 6
///     F <-+ n other than that --------> F.recurse.clone        (noinline)
///     |   |                                 |
///     +---+                                 v    5
///                                       F.recurse.clone.1      (alwaysinline)
///                                           :
///                                           v    0
///                                       F.recurse.clone.6      (alwaysinline)
///
/// Its first copy stays a function of its own, so that the frame of F is not
/// made for it.
///
/// Legality is what the pass goes by: protection (Protection.h) hides from the
/// driver what must not be copied, and lasts until behind this pass.
///
/// Growth is bounded for each function, and for the module by the larger of an
/// absolute number, which is what makes a small program fast, and a share of
/// its size.  Below -O3 the two numbers are a twelfth: the time that a
/// compilation takes grows as the code does.  What the functions of a module
/// ask for together may be more; GrowthBudget shares it out.
///
/// Before the inliner the pass looks at every recursion that is there.  It runs
/// once more behind it (BehindInliner.h), on what calls itself only since then.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H

#include "llvm/IR/PassManager.h"

namespace llvm {

class Function;

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

/// As parameters of a pass.
raw_ostream &operator<<(raw_ostream &OS, const AutoLimits &Limits);

/// Was \p F recursive when a run of AutoPass before the inliner looked at it?
bool isSeenByAuto(const Function &F);

/// Takes the marks of what was seen in \p M back.
void forgetSeen(Module &M);

class AutoPass : public PassInfoMixin<AutoPass> {
public:
  enum Place { BeforeInliner, BehindInliner };

  explicit AutoPass(AutoLimits Limits, Place Where = BeforeInliner)
      : Limits(Limits), Where(Where) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionAutoPass"; }

private:
  AutoLimits Limits;
  Place Where;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H
