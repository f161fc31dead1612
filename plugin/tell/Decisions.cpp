//===- Decisions.cpp - What was decided about a module --------------------===//

#include "plugin/tell/Decisions.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/Planned.h"
#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Metadata.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

void llvm::inlinerecursion::beginDecisions(Module &M) {
  M.getOrInsertNamedMetadata(DecisionsMark);
}

static Outcome getOutcome(const Verdict &V, bool IsPart) {
  if (V.Accepted)
    return IsPart ? Outcome::RebuiltPart : Outcome::Rebuilt;
  return IsPart ? Outcome::LeftPart : Outcome::Left;
}

void llvm::inlinerecursion::addDecision(const Function &F, const Verdict &V,
                                        bool IsPart) {
  const Module &M = *F.getParent();
  NamedMDNode *Written = M.getNamedMetadata(DecisionsMark);
  // What was built in an earlier run was written down there.
  if (!Written || V.Name == AlreadyChained)
    return;
  LLVMContext &Context = F.getContext();
  auto Number = [&Context](uint64_t Value) {
    return ConstantAsMetadata::get(
        ConstantInt::get(Type::getInt64Ty(Context), Value));
  };
  auto Text = [&Context](StringRef String) {
    return MDString::get(Context, String);
  };
  // Functions without a name are told apart by nothing but their order.
  const std::string Name = F.hasName()
                               ? F.getName().str()
                               : "\1" + utostr(Written->getNumOperands());
  Written->addOperand(
      MDNode::get(Context, {Text(Name), Number(unsigned(getOutcome(V, IsPart))),
                            Number(V.Growth), Text(V.Plan), Text(V.str()),
                            Text(getBodyHash(F)),
                            Number(unsigned(getPlace(M, V.IsLate)))}));
}

std::vector<Decision> llvm::inlinerecursion::readDecisions(const Module &M) {
  MapVector<std::pair<StringRef, uint64_t>, Decision> Last;
  if (const NamedMDNode *Written = M.getNamedMetadata(DecisionsMark))
    for (const MDNode *Entry : Written->operands()) {
      auto Number = [Entry](unsigned I) {
        return mdconst::extract<ConstantInt>(Entry->getOperand(I))
            ->getZExtValue();
      };
      auto Text = [Entry](unsigned I) {
        return cast<MDString>(Entry->getOperand(I))->getString();
      };
      Last[{Text(0), Number(6)}] = {
          Text(0).str(), Outcome(Number(1)), Number(2),       Text(3).str(),
          Text(4).str(), Text(5).str(),      Place(Number(6))};
    }
  std::vector<Decision> Result;
  for (auto &Named : Last)
    Result.push_back(std::move(Named.second));
  return Result;
}

void llvm::inlinerecursion::endDecisions(Module &M) {
  if (NamedMDNode *Written = M.getNamedMetadata(DecisionsMark))
    M.eraseNamedMetadata(Written);
}
