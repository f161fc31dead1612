//===- Protection.h - What must not be cloned or redirected -----*- C++ -*-===//
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
/// There are two kinds of reasons.  Hazards hold always.  Wishes are what the
/// source says about the function (noinline, cold, optimise for size); a
/// request for a ring, being the user's word too, overrules them.  No request
/// is found for a function that is not to be inlined (see Requests.h).
///
/// What the pass loses and can be put back behind it is no reason to keep it
/// away; see CallRepair.h.  docs/hazards.md has the list of all that was looked
/// at, and what was decided.
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

#include "llvm/ADT/StringRef.h"
#include "llvm/IR/PassManager.h"

namespace llvm {

class Function;

namespace inlinerecursion {

/// Why a function is kept away from the pass.
struct ProtectionReason {
  /// One word in UpperCamelCase: a remark's name, and the attribute's value.
  StringLiteral Name;
  /// Half a sentence about the function.
  StringLiteral Text;
  bool (*Holds)(const Function &F);
};

/// The first hazard of \p F, which has a body and calls itself or is requested;
/// null if there is none.
const ProtectionReason *findHazard(const Function &F);

/// The first wish in the source of \p F against copies; null if there is none.
const ProtectionReason *findWish(const Function &F);

/// The local variables of \p F in memory, as far as their size is known
/// (bytes).
uint64_t getFrameSize(const Function &F);

/// The wish not to inline \p F, at the function or at a call of it.
bool isNotToBeInlined(const Function &F);

/// Why \p F is protected at the moment; null if it is not.
const ProtectionReason *getProtection(const Function &F);

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
