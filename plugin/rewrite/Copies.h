//===- Copies.h - Copies of a function, linked and marked -------*- C++ -*-===//
//
/// \file
/// What rings and chains of leaves have in common.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_COPIES_H
#define INLINERECURSION_PLUGIN_REWRITE_COPIES_H

namespace llvm {

class Function;

namespace inlinerecursion {

/// Lets the calls of \p From in \p Caller call \p To, which has its type.
void redirectCallsIn(Function &Caller, Function &From, Function &To);

/// Has the inliner merge \p F into all who call it.
void mergeIntoCallers(Function &F);

/// Keeps \p F, into which others are merged, a function of its own.
void keepFunction(Function &F);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_COPIES_H
