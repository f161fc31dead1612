//===- Plan.cpp - What is to be built of one function ---------------------===//

#include "plugin/rewrite/Plan.h"
#include "llvm/Support/ErrorHandling.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

PlanSpec llvm::inlinerecursion::describe(const Plan &Made) {
  PlanSpec Spec;
  switch (Made.Kind) {
  case Plan::Nothing:
    break;
  case Plan::Chain:
    Spec.Kind = PlanSpec::Chain;
    Spec.Copies = Made.Copies;
    break;
  case Plan::Leaves:
    Spec.Kind = PlanSpec::Leaves;
    Spec.Levels.assign(Made.EntryLevels.begin(), Made.EntryLevels.end());
    break;
  case Plan::Ring:
    Spec.Kind = PlanSpec::Ring;
    Spec.Copies = Made.Copies;
    Spec.Guard = Made.Guard.has_value();
    Spec.Staggered = Made.Staggered;
    break;
  case Plan::Split:
    Spec.Kind = PlanSpec::Split;
    break;
  case Plan::States:
    Spec.Kind = PlanSpec::States;
    for (unsigned Number : Made.Known->getKnownArguments())
      Spec.Arguments.push_back(Number + 1);
    break;
  }
  return Spec;
}

StringRef llvm::inlinerecursion::getShapeName(Plan::Shape Kind) {
  switch (Kind) {
  case Plan::Nothing:
    return "nothing";
  case Plan::Chain:
    return "chain";
  case Plan::Leaves:
    return "leaf chain";
  case Plan::Ring:
    return "ring";
  case Plan::Split:
    return "split";
  case Plan::States:
    return "copy for each state";
  }
  llvm_unreachable("a shape without a name");
}
