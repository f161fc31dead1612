//===- Reasons.h - Why the pass takes a function, or does not ---*- C++ -*-===//
//
/// \file
/// The pass answers with a bool.  This room finds the words for it: the one
/// reason that decided, with its numbers.  Whether a function is accepted is
/// always the costing record's own answer; only the reason is worked out here,
/// rule by rule in the order of the record.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_REASONS_H
#define INLINERECURSION_PLUGIN_LITERAL_REASONS_H

#include "pass/InlineRecursion.h"
#include "plugin/ir/CloneChain.h"
#include "plugin/tell/Verdict.h"
#include <optional>

namespace llvm {
namespace inlinerecursion {

/// Why the driver will not even look at \p F (directly recursive, with a body);
/// none if it will.
std::optional<Verdict> judgeFilter(const Function &F);

/// The decision that the driver is about to take on the freshly analysed
/// \p Costing, with \p CloneCount copies granted so far.  The record and the
/// option that carries the depth are left as they were, and nothing is printed.
Verdict judgeCosting(InlineRecursion::InlineRecursionCosting Costing,
                     unsigned CloneCount);

/// Why \p F, which requests a ring and is not kept away from the pass, has not
/// been given one.
Verdict explainRefusedRing(const Function &F);

/// That \p Ring was granted, and on whose wish.
Verdict describeRing(const CloneChain &Ring);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_REASONS_H
