//===- RefusedRequests.h - Rings in the place of the pass -------*- C++ -*-===//
//
/// \file
/// The pass grants a ring by its own rules, which go by what LLVM knows of a
/// remainder: `n % 9` of a signed argument seems to have 16 values, and of an
/// unsigned one any number (docs/ring-ranges.md).  What the source asks for and
/// the pass has refused is looked at here, behind the pass:
///
///   - Where all self calls step by constants, the remainder has exactly as
///   many
///     values as the divisor says, and a ring of so many copies is built by the
///     pass's own driver, marked as if it was granted, and specialised for the
///     constants that enter it.  RingInliningPass aligns it (RingAlignment.h),
///     which is all that such a ring is for.
///   - Where they do not, the automatic policy may have a copy for each state
///   of
///     the arguments (policy/StatesOffer.cpp).  If one follows, the reason why
///     there is no ring is left on the function (RefusedMark).
///   - The user is warned otherwise, and told which rule refused and what to
///     write instead.
///
/// How large such a ring may be is limited as for those of the pass
/// (legality/RingSize.h); the number of copies is limited by MaxRemainders.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_REFUSEDREQUESTS_H
#define INLINERECURSION_PLUGIN_LITERAL_REFUSEDREQUESTS_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Would a ring of \p F, which the pass has refused, be built here?
bool mayBuildRefused(Function &F);

/// Builds the rings that \p M asks for and the pass has refused, where that is
/// possible.  \p AutoFollows: an automatic policy is to come, which has the
/// last word about the others.  True if the module was changed.  A SingleRun
/// must be alive.
bool buildRefusedRings(Module &M, FunctionAnalysisManager &FAM,
                       bool AutoFollows);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_REFUSEDREQUESTS_H
