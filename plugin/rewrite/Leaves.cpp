//===- Leaves.cpp - A chain for the last levels of a recursion ------------===//

#include "plugin/rewrite/Leaves.h"
#include "plugin/ir/Driver.h"
#include "plugin/rewrite/Copies.h"
#include "plugin/rewrite/Plan.h"
#include "llvm/ADT/STLExtras.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

void llvm::inlinerecursion::buildLeaves(
    Function &F, const Plan &Leaves, Driver &D,
    const SmallPtrSetImpl<Function *> &Callers) {
  const SmallVector<Function *, 4> Copies =
      D.buildCopies(F, Leaves.Copies, /*AsRing=*/false);
  // Nobody but the function itself enters them.
  for (Function *Caller : Callers)
    redirectCallsIn(*Caller, *Copies.front(), F);

  const RecursionCounter &Counter = *Leaves.Counter;
  for (auto [K, Copy] : enumerate(Copies)) {
    // The driver has linked plain calls.
    if (K + 1 != Copies.size())
      redirectCallsIn(*Copy, F, *Copies[K + 1]);
    fixCounter(*Copy, Counter, Copies.size() - 1 - K);
  }
  keepFunction(*Copies.front());
  for (Function *Copy : drop_begin(Copies))
    mergeIntoCallers(*Copy);

  SmallVector<std::pair<ConstantInt *, Function *>, 2> Entries;
  for (unsigned Levels : Leaves.EntryLevels)
    Entries.emplace_back(Counter.Values[Levels],
                         Copies[Copies.size() - 1 - Levels]);
  enterLeaves(F, *Counter.Counter, Entries);
}
