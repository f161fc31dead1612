//===- Remarks.cpp - What was decided, told to the user -------------------===//

#include "Remarks.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// The name that -Rpass=, -Rpass-missed= and the like match.
static const char *const RemarkPassName = "inlinerecursion";

bool llvm::inlinerecursion::areRemarksEnabled(const Module &M) {
  return OptimizationRemarkEmitter::allowExtraAnalysis(M.getContext(),
                                                       RemarkPassName);
}

template <typename RemarkT>
static RemarkT buildRemark(Function &F, const Verdict &V, StringRef Outcome) {
  RemarkT Remark(RemarkPassName, V.Name, &F);
  Remark << "'" << ore::NV("Callee", &F) << "' " << Outcome;
  for (const Verdict::Argument &Piece : V.Message)
    Remark << Piece;
  return Remark;
}

void llvm::inlinerecursion::emitRemark(Function &F, const Verdict &V) {
  OptimizationRemarkEmitter ORE(&F);
  if (V.Accepted) {
    auto Remark = buildRemark<OptimizationRemark>(F, V, "rebuilt as a ");
    ORE.emit(Remark);
  } else {
    auto Remark = buildRemark<OptimizationRemarkMissed>(F, V, "not chained: ");
    ORE.emit(Remark);
  }
}
