//===- InliningPlan.h - Which copies are inlined ----------------*- C++ -*-===//
//
/// \file
/// Decides for a group of functions made of one recursive function which of
/// them are inlined into their callers.
///
/// The inliner must not be left to itself with such a group.  With two self
/// calls per body it sees two calls of each member, all of moderate size, and
/// where it thinks them hot enough it inlines them top-down without end: the
/// body of level k comes out 2^k times.  Marking all of them alwaysinline does
/// the same on purpose.
///
/// So every member is marked one way or the other, callees first, and one that
/// has grown over a limit by what is inlined into it becomes a function of its
/// own.  Each piece of code that is left is then no larger than one body and,
/// for each call in it, the limit.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_INLININGPLAN_H
#define INLINERECURSION_HOST_INLININGPLAN_H

#include "llvm/ADT/ArrayRef.h"

namespace llvm {

class Function;

/// The instructions of \p F, debug intrinsics left out.
unsigned getCodeSize(const Function &F);

/// Marks every function of \p Group `alwaysinline` if its size with all that is
/// inlined into it is at most \p MaxInlinedSize (instructions), else
/// `noinline`.  Callers stand before their callees in \p Group; a function that
/// is called from one behind it (a cycle is closed) is marked `noinline`.
/// Inlining a function that is called from several places makes more code: that
/// is taken from \p GrowthLeft (instructions), and not done when none is left.
void planInlining(ArrayRef<Function *> Group, unsigned MaxInlinedSize,
                  unsigned &GrowthLeft);

} // namespace llvm

#endif // INLINERECURSION_HOST_INLININGPLAN_H
