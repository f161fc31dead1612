//===- Leaves.h - A chain for the last levels of a recursion ----*- C++ -*-===//
//
/// \file
/// A leaf chain is a chain that the function itself enters, where its counter
/// (CountedRecursion.h) tells how many levels are left:
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
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_LEAVES_H
#define INLINERECURSION_PLUGIN_REWRITE_LEAVES_H

#include "llvm/ADT/SmallPtrSet.h"

namespace llvm {

class Function;

namespace inlinerecursion {

class Driver;
struct Plan;

/// Builds the leaves that \p Leaves says of \p F, which \p Callers call.
void buildLeaves(Function &F, const Plan &Leaves, Driver &D,
                 const SmallPtrSetImpl<Function *> &Callers);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_LEAVES_H
