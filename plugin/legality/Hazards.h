//===- Hazards.h - What must not be cloned or redirected --------*- C++ -*-===//
//
/// \file
/// Two tables of reasons to keep a function away from the pass: one predicate,
/// one half of a sentence and one comment each, and where the user can do
/// something about it, what that is.
///
/// Hazards hold always: what the pass does, taken literally, would break the
/// program or the machine's stack.  Wishes are what the source says about the
/// function (noinline, cold, optimise for size); a request for a ring, being
/// the user's word too, overrules them.  No request is found for a function
/// that is not to be inlined (see Requests.h).
///
/// What the pass loses and can be put back behind it is no reason to keep it
/// away; see CallRepair.h.  docs/hazards.md has the list of all that was looked
/// at, and what was decided.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_HAZARDS_H
#define INLINERECURSION_PLUGIN_LEGALITY_HAZARDS_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/StringRef.h"

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
  /// What the user can do about it, in a few words; empty where nothing helps,
  /// or what would help is not in his hands.
  StringLiteral Remedy = "";
  /// Does it leave copies open that are not inlined into each other?
  bool LeavesStates = false;
};

ArrayRef<ProtectionReason> getHazards();
ArrayRef<ProtectionReason> getWishes();

/// The first of \p Reasons that holds of \p F, which has a body and calls
/// itself or is requested; null if none does.
const ProtectionReason *findReason(ArrayRef<ProtectionReason> Reasons,
                                   const Function &F);

/// The first wish in the source of \p F against copies; null if there is none.
inline const ProtectionReason *findWish(const Function &F) {
  return findReason(getWishes(), F);
}

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_HAZARDS_H
