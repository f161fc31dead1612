//===- EntrySplit.cpp - What a recursion does before its test -------------===//

#include "EntrySplit.h"
#include "ExtendedCopy.h"
#include "SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Transforms/Utils/Cloning.h"
#include "llvm/Transforms/Utils/Local.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// The blocks that can be reached from \p From, with it.
static SmallPtrSet<const BasicBlock *, 16> findReachable(BasicBlock *From) {
  SmallPtrSet<const BasicBlock *, 16> Reached;
  SmallVector<BasicBlock *, 16> Worklist = {From};
  while (!Worklist.empty()) {
    BasicBlock *BB = Worklist.pop_back_val();
    if (Reached.insert(BB).second)
      append_range(Worklist, successors(BB));
  }
  return Reached;
}

std::optional<EntrySplit>
llvm::inlinerecursion::findEntrySplit(Function &F, unsigned MaxSize,
                                      bool InlinerFollows) {
  std::optional<EntryGuard> Head =
      findEntryGuard(F, MaxSize, /*IsRepeated=*/false);
  if (!Head)
    return std::nullopt;
  EntrySplit Split = {*Head, Head->Beyond, Head->Blocks.back(), {}, {}};
  auto Rest = findReachable(Split.Begin);
  if (Rest.contains(Split.Before) && Head->Blocks.size() > 1 &&
      all_of(*Split.Before, [](const Instruction &I) {
        return I.isTerminator() || isRepeatable(I);
      })) {
    Split.Begin = Split.Before;
    Split.Before = *std::prev(Head->Blocks.end(), 2);
  }
  auto HeadOnly = make_filter_range(
      Head->Blocks, [&](const BasicBlock *BB) { return BB != Split.Begin; });
  if (any_of(HeadOnly,
             [&](const BasicBlock *BB) { return Rest.contains(BB); }) ||
      count(successors(Split.Before), Split.Begin) != 1)
    return std::nullopt;

  auto IsInRest = [&](const Use &U) {
    const auto *User = cast<Instruction>(U.getUser());
    const auto *Phi = dyn_cast<PHINode>(User);
    if (!Phi)
      return Rest.contains(User->getParent());
    const BasicBlock *From = Phi->getIncomingBlock(U);
    return Rest.contains(From) ||
           (From == Split.Before && Phi->getParent() == Split.Begin);
  };
  for (BasicBlock *BB : HeadOnly)
    for (Instruction &I : *BB) {
      const auto *Call = dyn_cast<CallBase>(&I);
      if (InlinerFollows && Call && Call->getCalledFunction() &&
          !Call->getCalledFunction()->isDeclaration())
        return std::nullopt;
      if (none_of(I.uses(), IsInRest))
        continue;
      if (auto *Alloca = dyn_cast<AllocaInst>(&I)) {
        // It would have two addresses.
        if (!Alloca->isStaticAlloca() || !all_of(I.uses(), IsInRest))
          return std::nullopt;
        Split.Variables.push_back(Alloca);
        continue;
      }
      if (I.getType()->isTokenTy())
        return std::nullopt;
      Split.LiveValues.push_back(&I);
    }
  if (F.arg_size() + Split.LiveValues.size() > MaxArguments)
    return std::nullopt;
  return Split;
}

/// A copy of \p F that begins beyond the head of \p Split.
static Function &cloneRest(Function &F, const EntrySplit &Split) {
  SmallVector<Type *, 4> Types;
  for (const Instruction *Live : Split.LiveValues)
    Types.push_back(Live->getType());
  ValueToValueMapTy VMap;
  Function *Rest = &createExtendedCopy(F, Types, ".recurse.rest", VMap);
  // What is handed over may point to the same as the argument it comes from.
  for (Argument &A : Rest->args())
    A.removeAttr(Attribute::NoAlias);

  for (auto [I, Live] : enumerate(Split.LiveValues)) {
    Argument *HandedOver = Rest->getArg(F.arg_size() + I);
    HandedOver->takeName(VMap[Live]);
    VMap[Live]->replaceAllUsesWith(HandedOver);
  }
  auto *Begin = cast<BasicBlock>(VMap[Split.Begin]);
  auto *Before = cast<BasicBlock>(VMap[Split.Before]);
  auto *Entry =
      BasicBlock::Create(F.getContext(), "entry", Rest, &Rest->getEntryBlock());
  auto *Jump = BranchInst::Create(Begin, Entry);
  for (AllocaInst *Variable : Split.Variables)
    cast<AllocaInst>(VMap[Variable])->moveBefore(Jump);
  for (PHINode &Phi : Begin->phis())
    Phi.addIncoming(Phi.getIncomingValueForBlock(Before), Entry);
  removeUnreachableBlocks(*Rest);
  return *Rest;
}

Function &llvm::inlinerecursion::splitEntry(Function &F,
                                            const EntrySplit &Split) {
  Function &Rest = cloneRest(F, Split);
  reduceToGuard(F, Split.Head, Rest, Split.LiveValues);
  for (CallBase *Call : findCalls(Rest, F)) {
    InlineFunctionInfo Info;
    InlineFunction(*Call, Info);
  }
  return Rest;
}
