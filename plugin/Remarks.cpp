//===- Remarks.cpp - What the pass did, told to the user ------------------===//

#include "Remarks.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/DiagnosticInfo.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// The name under which -Rpass and the like select our remarks.
static const char *const RemarkPassName = "inlinerecursion";

bool CloneChain::isRing() const {
  return any_of(Copies.front()->users(), [&](const User *U) {
    const auto *Call = dyn_cast<CallInst>(U);
    return Call && Call->getCalledFunction() == Copies.front() &&
           Call->getFunction() == Copies.back();
  });
}

RemarkRecorder::RemarkRecorder(Module &M)
    : M(M), LastBefore(M.empty() ? nullptr : &M.getFunctionList().back()) {}

SmallVector<CloneChain, 0> RemarkRecorder::findChains() const {
  SmallVector<CloneChain, 0> Chains;
  if (!LastBefore)
    return Chains;

  // Copies are appended to the module, those of one function side by side and
  // in the order of the links, and are named after their origin.
  for (Function &Copy :
       make_range(std::next(LastBefore->getIterator()), M.end())) {
    StringRef Name = Copy.getName();
    Function *Origin = nullptr;
    size_t Suffix = Name.rfind(".recurse.clone");
    if (Suffix != StringRef::npos && Suffix != 0)
      Origin = M.getFunction(Name.take_front(Suffix));
    if (!Origin)
      continue;
    if (Chains.empty() || Chains.back().Origin != Origin)
      Chains.push_back({Origin, {}});
    Chains.back().Copies.push_back(&Copy);
  }
  return Chains;
}

void RemarkRecorder::emit() const {
  if (!OptimizationRemarkEmitter::allowExtraAnalysis(M.getContext(),
                                                     RemarkPassName))
    return;
  for (const CloneChain &Chain : findChains()) {
    OptimizationRemarkEmitter ORE(Chain.Origin);
    ORE.emit([&] {
      return OptimizationRemark(RemarkPassName, "Chained", Chain.Origin)
             << "'" << ore::NV("Callee", Chain.Origin) << "' rebuilt as a "
             << ore::NV("Shape", Chain.isRing() ? "ring" : "chain") << " of "
             << ore::NV("Copies", static_cast<unsigned>(Chain.Copies.size()))
             << (Chain.Copies.size() == 1 ? " copy" : " copies");
    });
  }
}
