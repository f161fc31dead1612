//===- Protection.h - What the pass is kept away from -----------*- C++ -*-===//
//
/// \file
/// The pass follows its own rules and asks nobody whether a function may be
/// copied.  Taken alone it breaks some programs: a weak function keeps its own
/// body although another file overrides it, a jump table leads from a copy into
/// the function that it was made of.  This pass runs before it and keeps it
/// away from such functions.
///
/// How: by the pass's own interface.  The driver refuses functions with the
/// attribute "llvm.recurse.clone", so a function to be kept away gets that, and
/// next to it "inlinerecursion-protected" with the reason, which tells it from
/// a real copy.  Both are taken back behind the pass (see CallRepair.h);
/// nothing of them is left in the module.
///
/// The reasons are tables (Hazards.h).
///
/// Compile time: the driver obtains dominator tree and ScalarEvolution of every
/// function with a body, while it can accept none that is neither directly
/// recursive nor requested.  Those are kept away for that reason alone.
///
/// Last, a request whose ring would become too large is withdrawn.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_PROTECTION_H
#define INLINERECURSION_PLUGIN_LEGALITY_PROTECTION_H

#include "plugin/legality/Hazards.h"
#include "llvm/IR/PassManager.h"

namespace llvm {

class Function;

namespace inlinerecursion {

/// Why \p F is protected at the moment; null if it is not.
const ProtectionReason *getProtection(const Function &F);

/// Takes the protection of those functions of \p M back that are kept away from
/// the rules of the level because they have a plan for the look that is being
/// taken.
void releasePlanned(Module &M);

/// Is \p F protected, but not from copies for states, which the automatic
/// policy may make in front of the inliner?  What is told about it is left to
/// that.
bool isLeftToStates(const Function &F);

/// Takes the protection of \p F back.
void removeProtection(Function &F);

/// Takes all protection in \p M back.
void removeProtection(Module &M);

/// Protects the functions of a module.  Changes nothing but function
/// attributes.
class ProtectionPass : public PassInfoMixin<ProtectionPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  static StringRef name() { return "InlineRecursionProtectionPass"; }
  /// Whoever runs the pass behind it relies on it.
  static bool isRequired() { return true; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_PROTECTION_H
