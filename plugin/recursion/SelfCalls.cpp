//===- SelfCalls.cpp - The calls that make a recursion --------------------===//

#include "plugin/recursion/SelfCalls.h"
#include "host/DirectCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/CFG.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

SmallVector<CallBase *, 4>
llvm::inlinerecursion::findCalls(Function &F, const Function &Callee) {
  return findCallsIn<CallBase>(
      F, [&Callee](const Function &Called) { return &Called == &Callee; });
}

bool llvm::inlinerecursion::isDirectlyRecursive(const Function &F) {
  return anyCallOf<CallBase>(F, isSelfCall);
}

/// Is \p Result (null for none) returned right behind \p I, either there or in
/// a block of returns that \p I's block goes to?  Where a scope ends, empty
/// blocks may stand in between.
static bool isReturnedBehind(const Instruction &I, const Value *Result) {
  const BasicBlock *From = I.getParent();
  const Instruction *Next = I.getNextNonDebugInstruction();
  SmallPtrSet<const BasicBlock *, 4> Seen;
  while (const auto *Branch = dyn_cast_or_null<BranchInst>(Next)) {
    if (!Branch->isUnconditional() || !Seen.insert(From).second)
      return false;
    const BasicBlock *To = Branch->getSuccessor(0);
    for (const PHINode &Phi : To->phis())
      if (Result && Phi.getIncomingValueForBlock(From) == Result) {
        Result = &Phi;
        break;
      }
    From = To;
    Next = To->getFirstNonPHIOrDbg();
  }
  const auto *Return = dyn_cast_or_null<ReturnInst>(Next);
  return Return &&
         (!Return->getReturnValue() || Return->getReturnValue() == Result);
}

bool llvm::inlinerecursion::isTailCall(const CallBase &Call) {
  return isa<CallInst>(Call) && isReturnedBehind(Call, &Call);
}

bool llvm::inlinerecursion::isAccumulating(const CallBase &Call) {
  const Instruction *Operation = Call.getNextNonDebugInstruction();
  return isa<CallInst>(Call) && Operation && isa<BinaryOperator>(Operation) &&
         Operation->isAssociative() && Operation->isCommutative() &&
         is_contained(Operation->operands(), &Call) && Call.hasOneUse() &&
         Operation->hasOneUse() && isReturnedBehind(*Operation, Operation);
}

bool llvm::inlinerecursion::becomesLoop(const CallBase &Call) {
  return isTailCall(Call) || isAccumulating(Call);
}

bool llvm::inlinerecursion::dependsOnResult(const Value *V,
                                            ArrayRef<CallBase *> Calls,
                                            unsigned Depth) {
  const auto *I = dyn_cast<Instruction>(V);
  if (!I || Depth == 0)
    return false;
  if (is_contained(Calls, I))
    return true;
  return any_of(I->operands(), [&](const Use &Operand) {
    return dependsOnResult(Operand, Calls, Depth - 1);
  });
}

const Loop *llvm::inlinerecursion::findTailLoop(const Function &F,
                                                const LoopInfo &LI) {
  const BasicBlock &Entry = F.getEntryBlock();
  const BasicBlock *Header = Entry.getSingleSuccessor();
  const Loop *L = Header ? LI.getLoopFor(Header) : nullptr;
  return L && L->getHeader() == Header && Entry.sizeWithoutDebug() == 1
             ? L
             : nullptr;
}

bool llvm::inlinerecursion::areTestedOneByOne(ArrayRef<CallBase *> Calls,
                                              const DominatorTree &DT,
                                              const PostDominatorTree &PDT) {
  const BasicBlock *Entry = DT.getRoot();
  auto IsFollowedBy = [&](const CallBase *First, const CallBase *Second) {
    return isPotentiallyReachable(First, Second, nullptr, &DT);
  };
  return all_of(Calls, [&](const CallBase *Call) {
    return !PDT.dominates(Call->getParent(), Entry) &&
           all_of(Calls, [&](const CallBase *Other) {
             return Call == Other ||
                    (!DT.dominates(Call, Other) &&
                     (IsFollowedBy(Call, Other) || IsFollowedBy(Other, Call)));
           });
  });
}

unsigned
llvm::inlinerecursion::countSteppedArguments(const Function &F,
                                             ArrayRef<CallBase *> Calls) {
  return count_if(F.args(), [&](const Argument &A) {
    return any_of(Calls, [&A](const CallBase *Call) {
      return Call->getArgOperand(A.getArgNo()) != &A;
    });
  });
}

bool llvm::inlinerecursion::excludeEachOther(ArrayRef<CallBase *> Calls,
                                             const DominatorTree &DT) {
  return Calls.size() > 1 && all_of(Calls, [&](const CallBase *Call) {
           return none_of(Calls, [&](const CallBase *Other) {
             return Call != Other &&
                    isPotentiallyReachable(Call, Other, nullptr, &DT);
           });
         });
}
