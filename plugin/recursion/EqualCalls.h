//===- EqualCalls.h - Self calls that compute the same ----------*- C++ -*-===//
//
/// \file
/// f(n-1) and f(n-2) both need f(n-3).  Where a recursion writes nothing and
/// its arguments step by constants, calls at different places of two copies of
/// it are the same, and once the copies are in one function, common
/// subexpression elimination makes one of them.  Each level of a recursion then
/// grows by less than all of its calls.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_EQUALCALLS_H
#define INLINERECURSION_PLUGIN_RECURSION_EQUALCALLS_H

#include "llvm/IR/PassManager.h"

namespace llvm {

class CallBase;
class ScalarEvolution;

namespace inlinerecursion {

/// Would calls at different places in two copies of \p F, whose self calls are
/// \p Calls, be equal?  They are where all steps are constants, in whatever
/// order those are made.  One of two calls has to follow the other.
///
/// A recursion that accumulates is not turned into a loop then, so one of the
/// other calls must recurse as deeply as that one: by steps that are not larger
/// and in the same direction.
bool hasEqualCalls(Function &F, ArrayRef<CallBase *> Calls,
                   FunctionAnalysisManager &FAM);

/// Is one of \p Calls, the self calls of \p F, equal to one that another one
/// leads to, as f(n-2) is to what f(n-1) calls?  It is made anyhow then,
/// whether the other one ends the recursion or not.  Otherwise equal calls
/// stand as deep as each other, as those of a triangle do, f(r+1, c) and f(r+1,
/// c+1). \p Calls are equal somewhere.
bool hasEqualCallsAcrossLevels(Function &F, ArrayRef<CallBase *> Calls,
                               ScalarEvolution &SE);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_EQUALCALLS_H
