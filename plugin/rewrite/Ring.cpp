//===- Ring.cpp - A ring that nobody asked for ----------------------------===//

#include "plugin/rewrite/Ring.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/HoistableCalls.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/rewrite/Copies.h"
#include "plugin/rewrite/Plan.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/InstrTypes.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Links copy \p K of \p Copies, which are copies of \p F.  What leads behind
/// the last one enters the ring anew, by \p Entry.
static void linkCopy(Function &F, ArrayRef<Function *> Copies, size_t K,
                     bool Staggered, Function &Entry) {
  Function &Linked = K + 1 == Copies.size() ? *Copies.front() : *Copies[K + 1];
  // The driver has linked plain calls.
  redirectCallsIn(*Copies[K], F, Linked);
  for (auto [I, Call] : enumerate(findCalls(*Copies[K], Linked))) {
    const size_t To = K + 1 + (Staggered && I > 0);
    Call->setCalledFunction(To < Copies.size() ? Copies[To] : &Entry);
  }
}

void llvm::inlinerecursion::buildRing(
    Function &F, const Plan &Ring, Driver &D,
    const SmallPtrSetImpl<Function *> &Callers) {
  const SmallVector<Function *, 4> Copies =
      D.buildCopies(F, Ring.Copies, /*AsRing=*/true);
  Function &Head = *Copies.front();
  Function &Entry = Ring.Guard ? buildGuard(F, *Ring.Guard, Head) : Head;
  for (size_t K = 0; K != Copies.size(); ++K)
    linkCopy(F, Copies, K, Ring.Staggered, Entry);

  keepFunction(Head);
  if (Ring.MergesCalls)
    Head.addFnAttr(MergesMark);
  for (Function *Copy : drop_begin(Copies))
    mergeIntoCallers(*Copy);
  if (!Ring.Guard) {
    redirectCallsIn(F, F, Head);
    return;
  }

  // What is left of the function is for the inliner to judge, so those who
  // call from outside call it again.
  for (Function *Caller : Callers)
    redirectCallsIn(*Caller, Head, F);
  removeGuard(Head, F, *Ring.Guard);
  reduceToGuard(F, *Ring.Guard, Head);
  mergeIntoCallers(Entry);
  if (Ring.KeepsHoistableCalls)
    for (CallInst *Call : findHoistableCalls(F))
      Call->setIsNoInline();
}
