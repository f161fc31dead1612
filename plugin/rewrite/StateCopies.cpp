//===- StateCopies.cpp - One copy for each state --------------------------===//

#include "plugin/rewrite/StateCopies.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/States.h"
#include "llvm/IR/InstrTypes.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> MaxInlinedSize(
    "inlinerecursion-state-inline-size", cl::init(100), cl::Hidden,
    cl::desc(
        "Largest size, with what is inlined into it, of a copy for a state "
        "that is itself inlined into its callers (instructions)"));

SmallVector<Function *, 4>
llvm::inlinerecursion::buildStates(Function &F, const StateSet &States) {
  Specializations Made(F);
  std::vector<Specializations::CallMap> Calls(States.States.size());
  for (auto [S, CallsOfS] : zip(States.States, Calls))
    Made.make(S.Arguments, &CallsOfS).addFnAttr(StateMark);

  auto Target = [&States](unsigned Number) -> const ArgumentTuple & {
    return States.States[Number].Arguments;
  };
  for (auto [S, CallsOfS] : zip(States.States, Calls))
    for (auto [Call, Number] : S.Next)
      if (CallBase *Clone = CallsOfS.lookup(Call))
        Made.redirect(*Clone, Target(Number));
  for (auto [Call, Number] : States.Entries)
    Made.redirect(*Call, Target(Number));

  SmallVector<Function *, 4> Recursive;
  SmallVector<Function *, 16> Others;
  for (Function *Copy : Made.getCopies())
    if (isDirectlyRecursive(*Copy))
      Recursive.push_back(Copy);
    else
      Others.push_back(Copy);
  unsigned GrowthLeft = States.getSize();
  planInlining(Others, MaxInlinedSize, GrowthLeft);
  return Recursive;
}
