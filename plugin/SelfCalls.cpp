//===- SelfCalls.cpp - The calls that make a recursion --------------------===//

#include "SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

SmallVector<CallBase *, 4>
llvm::inlinerecursion::findCalls(Function &F, const Function &Callee) {
  SmallVector<CallBase *, 4> Calls;
  for (Instruction &I : instructions(F)) {
    auto *Call = dyn_cast<CallBase>(&I);
    if (Call && Call->getCalledFunction() == &Callee)
      Calls.push_back(Call);
  }
  return Calls;
}

/// A loop of more trips is not unrolled completely for the sake of its call.
static constexpr unsigned MaxUnrollableTrips = 16;

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

bool llvm::inlinerecursion::isInShortLoop(const CallBase &Call,
                                          const LoopInfo &LI,
                                          ScalarEvolution &SE) {
  const Loop *L = LI.getLoopFor(Call.getParent());
  const unsigned Trips = L ? SE.getSmallConstantTripCount(L) : 0;
  return Trips > 1 && Trips <= MaxUnrollableTrips;
}
