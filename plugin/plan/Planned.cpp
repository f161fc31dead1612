//===- Planned.cpp - The plan that a function has -------------------------===//

#include "plugin/plan/Planned.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/PlanBook.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// What the attribute \p Mark of \p F says: the plan, and where it stands.
static std::pair<StringRef, StringRef> read(const Function &F, StringRef Mark) {
  return F.getFnAttribute(Mark).getValueAsString().split('\n');
}

static std::optional<PlanSpec> parse(const Function &F, StringRef Mark) {
  if (!F.hasFnAttribute(Mark))
    return std::nullopt;
  // Written by setPlan.
  return cantFail(PlanSpec::parse(read(F, Mark).first));
}

std::optional<PlanSpec> llvm::inlinerecursion::getPlan(const Function &F) {
  return parse(F, PlanMark);
}

StringRef llvm::inlinerecursion::getPlanOrigin(const Function &F) {
  return read(F, PlanMark).second;
}

bool llvm::inlinerecursion::isPlanned(const Function &F) {
  const std::optional<PlanSpec> Plan = getPlan(F);
  return (Plan && !Plan->ByRules) || isPlannedLate(F);
}

bool llvm::inlinerecursion::isPlannedLate(const Function &F) {
  return F.hasFnAttribute(LatePlanMark);
}

void llvm::inlinerecursion::beginPlans(Module &M) {
  M.getOrInsertNamedMetadata(PlansMark);
}

void llvm::inlinerecursion::setPlan(Function &F, const PlanSpec &Spec,
                                    StringRef Origin, bool IsLate) {
  F.addFnAttr(IsLate ? LatePlanMark : PlanMark,
              (Spec.str() + "\n" + Origin).str());
}

void llvm::inlinerecursion::dropPlan(Function &F) { F.removeFnAttr(PlanMark); }

void llvm::inlinerecursion::beginLateLook(Module &M) {
  if (!hasPlans(M))
    return;
  for (Function &F : M) {
    F.removeFnAttr(PlanMark);
    if (!isPlannedLate(F))
      continue;
    F.addFnAttr(PlanMark, F.getFnAttribute(LatePlanMark).getValueAsString());
    F.removeFnAttr(LatePlanMark);
  }
}

void llvm::inlinerecursion::replanPart(Function &F, bool IsLate) {
  dropPlan(F);
  F.removeFnAttr(LatePlanMark);
  const PlanBook *Book = PlanBook::get();
  if (!Book)
    return;
  const Module &M = *F.getParent();
  auto Replan = [&](bool InLateLook) {
    for (const PlanEntry *Entry :
         Book->find(F.getName(), getSourceFile(M), getPlace(M, InLateLook)))
      if (Entry->Body.empty() || Entry->Body == getBodyHash(F))
        return setPlan(F, Entry->Plan, Entry->Origin,
                       /*IsLate=*/InLateLook != IsLate);
  };
  Replan(IsLate);
  if (!IsLate)
    Replan(/*InLateLook=*/true);
}

bool llvm::inlinerecursion::isInLinkStep(const Module &M) {
  return M.getModuleFlag(CompiledMark) != nullptr;
}

Place llvm::inlinerecursion::getPlace(const Module &M, bool IsLate) {
  if (isInLinkStep(M))
    return IsLate ? Place::LinkLate : Place::Link;
  return IsLate ? Place::Late : Place::Early;
}

StringRef llvm::inlinerecursion::getBodyHash(const Function &F) {
  return F.getFnAttribute(BodyMark).getValueAsString();
}

bool llvm::inlinerecursion::hasPlans(const Module &M) {
  return M.getNamedMetadata(PlansMark);
}

void llvm::inlinerecursion::endPlans(Module &M) {
  NamedMDNode *Mark = M.getNamedMetadata(PlansMark);
  if (!Mark)
    return;
  M.eraseNamedMetadata(Mark);
  for (Function &F : M)
    for (StringRef Mark : {PlanMark, LatePlanMark, BodyMark})
      F.removeFnAttr(Mark);
}
