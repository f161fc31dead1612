//===- ProfileRepair.h - How often copies are entered -----------*- C++ -*-===//
//
/// \file
/// A copy starts with its origin's profile.  Branch weights are shares and as
/// right in the copy.  The entry count says how often all activations of the
/// function together began, and the copies have a part of that each:
///
///   caller              100 calls, known from the caller's own profile
///     v
///   F.recurse.clone     100               F had 1000: what comes from outside
///     v                                   comes here, and here only
///   F.recurse.clone.1   at most 900
///     v
///   F <-+               at most 900
///
/// How the rest is divided is not in the profile.  The share of activations
/// that call on is known on average only, while a bounded search calls on
/// several times at every level but the last: followed down by the average,
/// seven levels of two entries each would leave 1214 of 1228 activations to a
/// function that is not called any more.  What is hot would be taken for cold.
/// So the rest stays whole in all of them: too much, never too little.
///
/// Sample profiles also have a weight on every call, which is lost where the
/// pass rewrites it, and ProfileSummaryInfo takes a call without one in a
/// function with samples for cold.  Rewritten calls get the count of their
/// block.
///
/// Who instruments or reads a profile behind the pass (-fprofile-generate and
/// -fprofile-use) sees copies as functions of their own and needs none of this.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_PROFILEREPAIR_H
#define INLINERECURSION_PLUGIN_LEGALITY_PROFILEREPAIR_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Marks \p F, of which copies may be made, if it has an entry count: the
/// copies will carry the mark with them.
void markOrigin(Function &F);

/// Divides the entry counts of marked functions that were copied, and gives
/// rewritten calls their weights again.  Takes the marks back.
void repairProfile(Module &M, FunctionAnalysisManager &FAM);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_PROFILEREPAIR_H
