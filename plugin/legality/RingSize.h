//===- RingSize.h - How large a requested ring becomes ----------*- C++ -*-===//
//
/// \file
/// The pass grants a ring whatever its size is.  Here it is estimated in front
/// of the pass, with what will be inlined behind it (literal/RingInlining.h).
/// Rings of the automatic policy are inlined as a whole and have bounds of
/// their own (policy/FusedSize.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_RINGSIZE_H
#define INLINERECURSION_PLUGIN_LEGALITY_RINGSIZE_H

#include "plugin/tell/Verdict.h"
#include <optional>

namespace llvm {

class Function;

namespace inlinerecursion {

/// The largest size at which a copy of a function with \p SelfCalls self calls
/// is inlined in a ring (instructions).
unsigned getInlinedRingSize(unsigned SelfCalls);

/// Are \p Copies copies of \p F, side by side, more than a function may become
/// that did not ask for them?
bool isTooLargeUnasked(const Function &F, unsigned Copies);

/// Why a ring of \p Copies copies of \p F is larger than
/// `inlinerecursion-max-ring-size` allows; none if it is not.
std::optional<Verdict> judgeRingSize(const Function &F, unsigned Copies);

/// Takes the request of \p F back, which has one, and says so in a remark, if
/// its ring would be larger than `inlinerecursion-max-ring-size` allows.
void withdrawLargeRequest(Function &F);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_RINGSIZE_H
