//===- OtherCalls.cpp - What a recursion calls but itself -----------------===//

#include "plugin/recursion/OtherCalls.h"
#include "host/InliningPlan.h"
#include "llvm/ADT/DepthFirstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/IntrinsicInst.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// A function that is larger than this is taken to stay one (the inliner's
/// threshold of 225, at five for an instruction).
static constexpr unsigned MaxInlinedSize = 45;

/// A local function with a single call is inlined there up to a size of this
/// (the inliner's bonus for the last call, 15000, at five for an instruction).
static constexpr unsigned MaxOnlyCallSize = 3000;

/// Does no inliner make anything less of \p Call?
static bool staysCall(const CallBase &Call, bool InlinerFollows) {
  const Function *Callee = Call.getCalledFunction();
  return !InlinerFollows || !Callee || Callee->isDeclaration() ||
         Callee->hasFnAttribute(Attribute::NoInline) ||
         getCodeSize(*Callee) > MaxInlinedSize;
}

/// Is what \p Call calls inlined although it is large, because nobody else
/// calls it?
static bool isInlinedAsOnlyCall(const CallBase &Call) {
  const Function *Callee = Call.getCalledFunction();
  if (!Callee || !Callee->hasLocalLinkage() || !Callee->hasOneLiveUse() ||
      Callee->isDeclaration() || Callee->hasFnAttribute(Attribute::NoInline))
    return false;
  const unsigned Size = getCodeSize(*Callee);
  return Size > MaxInlinedSize && Size <= MaxOnlyCallSize;
}

OtherCalls llvm::inlinerecursion::findOtherCalls(const Function &F,
                                                 bool InlinerFollows) {
  df_iterator_default_set<const BasicBlock *> Exceptional;
  for (const BasicBlock &BB : F)
    if (BB.isEHPad() || isa<UnreachableInst>(BB.getTerminator()))
      Exceptional.insert(&BB);
  OtherCalls Other;
  for (const BasicBlock *BB : depth_first_ext(&F.getEntryBlock(), Exceptional))
    for (const Instruction &I : *BB) {
      const auto *Call = dyn_cast<CallBase>(&I);
      if (!Call || isa<IntrinsicInst>(Call) || Call->isInlineAsm() ||
          Call->getCalledFunction() == &F)
        continue;
      const Function *Callee = Call->getCalledFunction();
      if (InlinerFollows && isInlinedAsOnlyCall(*Call))
        Other.OnlyCallee = Callee;
      if (staysCall(*Call, InlinerFollows)) {
        ++Other.Count;
        Other.DirectCount += Callee != nullptr;
      } else {
        Other.InlinedSize += getCodeSize(*Callee);
      }
    }
  return Other;
}
