//===- DirectCalls.h - The calls of a function, and in it -------*- C++ -*-===//
//
/// \file
/// Who calls whom by name, with the type of the callee.  Two ways to look:
/// along the use list of the callee, which is short and tells of the whole
/// module, and along the body of the caller, which is in the order of the
/// program.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_DIRECTCALLS_H
#define INLINERECURSION_HOST_DIRECTCALLS_H

#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

namespace llvm {
namespace inlinerecursion {

/// The direct calls of \p F, in the order of its use list.  With CallBase, an
/// `invoke` and a `callbr` count as well.  One that also hands \p F on comes
/// once for each use.
template <typename CallT = CallInst>
SmallVector<CallT *, 8> findCallsOf(const Function &F) {
  SmallVector<CallT *, 8> Calls;
  // Whoever has a function may change those who call it.
  for (User *U : const_cast<Function &>(F).users())
    if (auto *Call = dyn_cast<CallT>(U);
        Call && Call->getCalledFunction() == &F)
      Calls.push_back(Call);
  return Calls;
}

/// Is there a direct call of \p F for which \p Wanted(const CallT &) holds?
template <typename CallT = CallInst, typename PredicateT>
bool anyCallOf(const Function &F, PredicateT Wanted) {
  return any_of(F.users(), [&](const User *U) {
    const auto *Call = dyn_cast<CallT>(U);
    return Call && Call->getCalledFunction() == &F && Wanted(*Call);
  });
}

/// The direct calls in \p Caller for whose callee \p IsWanted(Function &)
/// holds, in the order of the body.
template <typename CallT = CallInst, typename PredicateT>
SmallVector<CallT *, 4> findCallsIn(Function &Caller, PredicateT IsWanted) {
  SmallVector<CallT *, 4> Calls;
  for (Instruction &I : instructions(Caller))
    if (auto *Call = dyn_cast<CallT>(&I))
      if (Function *Callee = Call->getCalledFunction())
        if (IsWanted(*Callee))
          Calls.push_back(Call);
  return Calls;
}

/// The functions with a call that \p F is an operand of: those who call it, and
/// those who hand it on.
inline SmallPtrSet<Function *, 8> findCallers(const Function &F) {
  SmallPtrSet<Function *, 8> Callers;
  for (const User *U : F.users())
    if (const auto *Call = dyn_cast<CallBase>(U))
      Callers.insert(const_cast<Function *>(Call->getFunction()));
  return Callers;
}

/// Does \p Call stand in its own callee?
inline bool isSelfCall(const CallBase &Call) {
  return Call.getCalledFunction() == Call.getFunction();
}

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_HOST_DIRECTCALLS_H
