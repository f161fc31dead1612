//===- CloneChain.cpp - The chains that a run has built -------------------===//

#include "plugin/ir/CloneChain.h"
#include "host/DirectCalls.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

bool CloneChain::isRing() const {
  return anyCallOf(*Copies.front(), [this](const CallInst &Call) {
    return Call.getFunction() == Copies.back();
  });
}

SmallVector<CloneChain, 0>
llvm::inlinerecursion::findChains(Module &M, Function *LastBefore) {
  SmallVector<CloneChain, 0> Chains;
  // Copies are appended to the module, those of one function side by side and
  // in the order of the links, and are named after their origin.
  for (Function &Copy :
       make_range(std::next(LastBefore->getIterator()), M.end())) {
    StringRef Name = Copy.getName();
    const size_t Suffix = Name.rfind(CloneSuffix);
    if (Suffix == StringRef::npos || Suffix == 0)
      continue;
    Function *Origin = M.getFunction(Name.take_front(Suffix));
    if (!Origin)
      continue;
    if (Chains.empty() || Chains.back().Origin != Origin)
      Chains.push_back({Origin, {}});
    Chains.back().Copies.push_back(&Copy);
  }
  return Chains;
}
