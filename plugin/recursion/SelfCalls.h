//===- SelfCalls.h - The calls that make a recursion ------------*- C++ -*-===//
//
/// \file
/// What kinds of direct self calls a function has, and how they stand to each
/// other.  The kinds that matter are those that LLVM's tail recursion
/// elimination turns into a trip of a loop (TailRecursionElimination.cpp): a
/// loop needs no stack, and whoever takes it away from a program changes how
/// deep it can recurse.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_SELFCALLS_H
#define INLINERECURSION_PLUGIN_RECURSION_SELFCALLS_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"

namespace llvm {

class CallBase;
class DominatorTree;
class Function;
class Loop;
class LoopInfo;
class PostDominatorTree;
class Value;

namespace inlinerecursion {

/// The direct calls (`call` or `invoke`) of \p Callee in \p F, in the order of
/// its body.
SmallVector<CallBase *, 4> findCalls(Function &F, const Function &Callee);

/// Does \p F call itself directly, by `call`, `invoke` or `callbr`?
bool isDirectlyRecursive(const Function &F);

/// The direct calls of \p F in itself.
inline SmallVector<CallBase *, 4> findSelfCalls(Function &F) {
  return findCalls(F, F);
}

/// Is the result of \p Call, if there is one, all that the function returns
/// after it, with nothing in between?
bool isTailCall(const CallBase &Call);

/// Does nothing happen to the result of \p Call but one operation that can be
/// done beforehand, as in `return n + f(n - 1)`?  Tail recursion elimination
/// turns such a call into a trip of a loop, with an accumulator.
bool isAccumulating(const CallBase &Call);

/// Does tail recursion elimination turn \p Call into a trip of a loop?
bool becomesLoop(const CallBase &Call);

/// Does \p V depend on the result of one of \p Calls, by fewer than \p Depth
/// operations?
bool dependsOnResult(const Value *V, ArrayRef<CallBase *> Calls,
                     unsigned Depth = 4);

/// The loop that all of \p F is, which tail recursion elimination makes of a
/// self call; null if none.
const Loop *findTailLoop(const Function &F, const LoopInfo &LI);

/// Has each of \p Calls a test of its own in front of it, and may be made
/// whether the others are or not?  Then the one who calls has made the test
/// that a guard would make.
bool areTestedOneByOne(ArrayRef<CallBase *> Calls, const DominatorTree &DT,
                       const PostDominatorTree &PDT);

/// How many of its arguments does \p F hand on changed?
unsigned countSteppedArguments(const Function &F, ArrayRef<CallBase *> Calls);

/// Is none of \p Calls, two or more, made where another one has been?
bool excludeEachOther(ArrayRef<CallBase *> Calls, const DominatorTree &DT);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_SELFCALLS_H
