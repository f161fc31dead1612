//===- ExtendedCopy.cpp - A copy that takes more --------------------------===//

#include "plugin/ir/ExtendedCopy.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;

Function &llvm::inlinerecursion::createExtendedCopy(Function &F,
                                                    ArrayRef<Type *> More,
                                                    StringRef Suffix,
                                                    ValueToValueMapTy &Copied) {
  SmallVector<Type *, 8> Types(F.getFunctionType()->params());
  append_range(Types, More);
  Function &Copy = *Function::Create(
      FunctionType::get(F.getReturnType(), Types, /*isVarArg=*/false),
      F.getLinkage(), F.getAddressSpace(), F.getName() + Suffix, F.getParent());
  for (auto [Old, New] : zip(F.args(), Copy.args())) {
    New.setName(Old.getName());
    Copied[&Old] = &New;
  }
  SmallVector<ReturnInst *, 4> Returns;
  CloneFunctionInto(&Copy, &F, Copied,
                    CloneFunctionChangeType::LocalChangesOnly, Returns);
  // It has taken over how F is seen from outside.
  Copy.setLinkage(GlobalValue::InternalLinkage);
  return Copy;
}
