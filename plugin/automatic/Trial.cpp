//===- Trial.cpp - A preparation that can be taken back -------------------===//

#include "plugin/automatic/Trial.h"
#include "plugin/policy/Policy.h"
#include "plugin/policy/Preparation.h"
#include "llvm/IR/Dominators.h"
#include "llvm/Transforms/Scalar/TailRecursionElimination.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

Trial::Trial(Function &F, FunctionAnalysisManager &FAM, const Bounds &Limits,
             const Facts &Known, const Plan &Unprepared)
    : F(F), FAM(FAM), Limits(Limits), Known(Known), Unprepared(Unprepared),
      Subject(&F) {
  if (findSumToPass(Known, Limits, Unprepared))
    passSum();
  if (wantsLoopsFirst(getFacts(), Limits, getPlan()))
    makeLoops();
}

/// Puts the body of the function aside, if that has not been done.
void Trial::putAside() {
  if (Before)
    return;
  Before = std::make_unique<SavedBody>(F);
  FAM.invalidate(F, PreservedAnalyses::none());
}

/// Plans for what the function is now.
void Trial::plan() {
  Prepared = std::make_unique<Facts>(*Subject, FAM, Limits.InlinerFollows);
  Wanted = makePlan(*Prepared, Limits);
}

void Trial::passSum() {
  putAside();
  // The sum is that of the copy, not of the body that was asked about.
  const auto Sum = findAccumulation(F, FAM.getResult<DominatorTreeAnalysis>(F));
  Subject = &passAccumulator(F, *Sum);
  FAM.invalidate(F, PreservedAnalyses::none());
  plan();
}

void Trial::makeLoops() {
  putAside();
  HasLoops = true;
  FAM.invalidate(*Subject, TailCallElimPass().run(*Subject, FAM));
  plan();
}

void Trial::takeBack() {
  if (!Before)
    return;
  Prepared.reset();
  Before->restore();
  FAM.invalidate(F, PreservedAnalyses::none());
  if (!passesSum())
    return;
  FAM.clear(*Subject, Subject->getName());
  eraseFunction(*Subject);
}
