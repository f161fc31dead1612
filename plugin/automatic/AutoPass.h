//===- AutoPass.h - What nobody asked for -----------------------*- C++ -*-===//
//
/// \file
/// Runs behind the pass on the directly recursive functions that it did not
/// chain:
///
///   collect ---> prepare ---> share out ---> build
///    |            |            |              |
///    who calls    sums, loops  GrowthBudget   rewrite/Build
///    itself       first, what
///                 it would
///                 grow by
///
/// What to build of a function is for the policy to say (policy/Policy.h).
/// Legality is what the pass goes by: protection (legality/Protection.h) hides
/// from the driver what must not be copied, and lasts until behind this pass.
///
/// Growth is bounded for each function, and for the module by the larger of an
/// absolute number, which is what makes a small program fast, and a share of
/// its size.  What the functions of a module ask for together may be more;
/// GrowthBudget shares it out.
///
/// Before the inliner the pass looks at every recursion that is there.  It runs
/// once more behind it (BehindInliner.h), on what calls itself only since then.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H

#include "plugin/policy/Bounds.h"
#include "llvm/IR/PassManager.h"

namespace llvm {

class Function;

namespace inlinerecursion {

/// Was \p F recursive when a run of AutoPass before the inliner looked at it?
bool isSeenByAuto(const Function &F);

/// Takes the marks of what was seen in \p M back.
void forgetSeen(Module &M);

/// Tells about those functions of \p M whose refusal was held back and that no
/// second look has decided about.
void tellUndecided(Module &M);

class AutoPass : public PassInfoMixin<AutoPass> {
public:
  /// Where the pass stands is said by \p Limits, too: in front of an inliner it
  /// looks at all recursion, behind it at what is new.  \p SecondLookFollows:
  /// what is refused for a reason that may go away is decided and told there.
  explicit AutoPass(Bounds Limits, bool SecondLookFollows = false)
      : Limits(Limits), SecondLookFollows(SecondLookFollows) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionAutoPass"; }

private:
  Bounds Limits;
  bool SecondLookFollows;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_AUTOPASS_H
