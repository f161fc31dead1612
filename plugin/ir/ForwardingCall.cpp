//===- ForwardingCall.cpp - One function for another ----------------------===//

#include "plugin/ir/ForwardingCall.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/IRBuilder.h"

using namespace llvm;

BasicBlock &
llvm::inlinerecursion::createForwardingCall(Function &F, Function &Target,
                                            ArrayRef<Value *> More) {
  BasicBlock *Block = BasicBlock::Create(F.getContext(), "onward", &F);
  IRBuilder<> Builder(Block);
  // A call of what may be inlined needs a location in a function that has some.
  if (DISubprogram *SP = F.getSubprogram())
    Builder.SetCurrentDebugLocation(
        DILocation::get(F.getContext(), SP->getScopeLine(), 0, SP));
  SmallVector<Value *, 8> Args;
  for (Argument &A : F.args())
    Args.push_back(&A);
  append_range(Args, More);
  CallInst *Call = Builder.CreateCall(&Target, Args);
  Call->setCallingConv(Target.getCallingConv());
  if (F.getReturnType()->isVoidTy())
    Builder.CreateRetVoid();
  else
    Builder.CreateRet(Call);
  return *Block;
}

void llvm::inlinerecursion::redirectCalls(
    Function &From, Function &To, function_ref<bool(const CallBase &)> Wanted) {
  for (Use &U : make_early_inc_range(From.uses())) {
    auto *Call = dyn_cast<CallBase>(U.getUser());
    if (Call && Call->isCallee(&U) && Call->getCalledFunction() == &From &&
        Wanted(*Call))
      Call->setCalledFunction(&To);
  }
}
