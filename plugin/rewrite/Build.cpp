//===- Build.cpp - What a plan says, done ---------------------------------===//

#include "plugin/rewrite/Build.h"
#include "host/DirectCalls.h"
#include "plugin/ir/Driver.h"
#include "plugin/rewrite/Copies.h"
#include "plugin/rewrite/Leaves.h"
#include "plugin/rewrite/Plan.h"
#include "plugin/rewrite/Ring.h"
#include "plugin/rewrite/StateCopies.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

Built llvm::inlinerecursion::build(Function &F, const Plan &What, Driver &D) {
  Built Result;
  if (What.Kind == Plan::Split)
    Result.Rest = &splitEntry(F, *What.Where);
  // The driver leads plain calls from outside to the first copy.
  Result.Changed = findCallers(F);
  Result.Changed.insert(&F);
  switch (What.Kind) {
  case Plan::Nothing:
  case Plan::Split:
    break;
  case Plan::Chain:
    for (Function *Copy : D.buildCopies(F, What.Copies, /*AsRing=*/false))
      mergeIntoCallers(*Copy);
    break;
  case Plan::Leaves:
    buildLeaves(F, What, D, Result.Changed);
    break;
  case Plan::States:
    buildStates(F, *What.Known, Result.Copies, Result.OtherCopies);
    break;
  case Plan::Ring:
    buildRing(F, What, D, Result.Changed);
    break;
  }
  return Result;
}
