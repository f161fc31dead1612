//===- Summary.cpp - One line for each module -----------------------------===//

#include "plugin/tell/Summary.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Metadata.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

namespace {
/// What a decision was about and what it was, as it stands in the metadata.
enum Outcome : unsigned { Left, Rebuilt, RebuiltPart };

struct Decision {
  Outcome What = Left;
  uint64_t Growth = 0;
};

/// The last decision about each function, by its name, in the order in which
/// the functions were first decided about.
using Decisions = MapVector<StringRef, Decision>;
} // namespace

void llvm::inlinerecursion::beginSummary(Module &M) {
  M.getOrInsertNamedMetadata(DecisionsMark);
}

void llvm::inlinerecursion::countDecision(const Function &F, const Verdict &V,
                                          bool IsPart) {
  NamedMDNode *Written = F.getParent()->getNamedMetadata(DecisionsMark);
  // What was built in an earlier run was counted there.
  if (!Written || V.Name == AlreadyChained)
    return;
  const Outcome What = !V.Accepted ? Left : IsPart ? RebuiltPart : Rebuilt;
  LLVMContext &Context = F.getContext();
  auto Number = [&Context](uint64_t Value) {
    return ConstantAsMetadata::get(
        ConstantInt::get(Type::getInt64Ty(Context), Value));
  };
  // Functions without a name are told apart by nothing but their order.
  const std::string Name = F.hasName()
                               ? F.getName().str()
                               : "\1" + utostr(Written->getNumOperands());
  Written->addOperand(MDNode::get(
      Context, {MDString::get(Context, Name), Number(What), Number(V.Growth)}));
}

static Decisions readDecisions(const NamedMDNode &Written) {
  Decisions Last;
  for (const MDNode *Entry : Written.operands()) {
    auto Number = [Entry](unsigned I) {
      return mdconst::extract<ConstantInt>(Entry->getOperand(I))
          ->getZExtValue();
    };
    const auto *Name = cast<MDString>(Entry->getOperand(0));
    Last[Name->getString()] = {Outcome(Number(1)), Number(2)};
  }
  return Last;
}

/// A remark needs a function to hang on: the first one of \p Last that is still
/// there, or else the first one of \p M.  Null if there is no function.
static Function *findPlace(Module &M, const Decisions &Last) {
  for (const auto &[Name, What] : Last)
    if (Function *F = M.getFunction(Name); F && !F->isDeclaration())
      return F;
  const auto Found =
      find_if(M, [](const Function &F) { return !F.isDeclaration(); });
  return Found == M.end() ? nullptr : &*Found;
}

static void tellSummary(Module &M, const Decisions &Last) {
  unsigned Counts[] = {0, 0, 0};
  uint64_t Growth = 0;
  for (const auto &[Name, Decided] : Last) {
    ++Counts[Decided.What];
    Growth += Decided.Growth;
  }
  const unsigned Functions = Counts[Left] + Counts[Rebuilt];
  Function *Place = findPlace(M, Last);
  if (Functions == 0 || !Place)
    return;
  OptimizationRemarkEmitter ORE(Place);
  OptimizationRemarkAnalysis Remark(PassName.data(), "Summary", Place);
  Remark << NV("Functions", Functions)
         << (Functions == 1 ? " recursive function: "
                            : " recursive functions: ")
         << NV("Rebuilt", Counts[Rebuilt]) << " rebuilt, "
         << NV("Left", Counts[Left]) << " not; +" << NV("Growth", Growth)
         << (Growth == 1 ? " instruction" : " instructions");
  ORE.emit(Remark);
}

PreservedAnalyses SummaryPass::run(Module &M, ModuleAnalysisManager &) {
  if (NamedMDNode *Written = M.getNamedMetadata(DecisionsMark)) {
    tellSummary(M, readDecisions(*Written));
    M.eraseNamedMetadata(Written);
  }
  // No analysis rests on the metadata.
  return PreservedAnalyses::all();
}

void SummaryPass::printPipeline(raw_ostream &OS,
                                function_ref<StringRef(StringRef)>) {
  OS << SummaryName;
}
