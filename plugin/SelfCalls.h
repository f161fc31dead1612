//===- SelfCalls.h - The calls that make a recursion ------------*- C++ -*-===//
//
/// \file
/// What kinds of direct self calls a function has.  The kinds that matter are
/// those that LLVM's tail recursion elimination turns into a trip of a loop
/// (TailRecursionElimination.cpp): a loop needs no stack, and whoever takes it
/// away from a program changes how deep it can recurse.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_SELFCALLS_H
#define INLINERECURSION_PLUGIN_SELFCALLS_H

#include "llvm/ADT/SmallVector.h"

namespace llvm {

class CallBase;
class Function;
class LoopInfo;
class ScalarEvolution;

namespace inlinerecursion {

/// The direct calls (`call` or `invoke`) of \p Callee in \p F, in the order of
/// its body.
SmallVector<CallBase *, 4> findCalls(Function &F, const Function &Callee);

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

/// Does \p Call stand in a loop of so few trips, and a known number of them,
/// that the compiler unrolls it as long as it is small?
bool isInShortLoop(const CallBase &Call, const LoopInfo &LI,
                   ScalarEvolution &SE);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_SELFCALLS_H
