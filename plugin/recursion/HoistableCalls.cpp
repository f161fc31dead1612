//===- HoistableCalls.cpp - Calls that a loop makes once ------------------===//

#include "plugin/recursion/HoistableCalls.h"
#include "host/DirectCalls.h"
#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/IntrinsicInst.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

bool llvm::inlinerecursion::onlyReads(const Function &F) {
  return none_of(instructions(F), [&F](const Instruction &I) {
    const auto *Call = dyn_cast<CallBase>(&I);
    if (Call && (Call->getCalledFunction() == &F ||
                 isa<DbgInfoIntrinsic, LifetimeIntrinsic>(Call)))
      return false;
    return I.mayWriteToMemory() || I.mayThrow();
  });
}

/// Is \p V the same in every trip of \p L, or will be once what computes it,
/// by fewer than \p Depth operations, is moved out?
static bool isInvariant(const Value *V, const Loop &L, unsigned Depth = 4) {
  const auto *I = dyn_cast<Instruction>(V);
  if (!I || !L.contains(I))
    return true;
  if (Depth == 0 || isa<PHINode, CallBase>(I) || I->mayHaveSideEffects())
    return false;
  return all_of(I->operands(), [&](const Value *Operand) {
    return isInvariant(Operand, L, Depth - 1);
  });
}

/// Is \p Call all that its function does?
static bool isAllOf(const CallInst &Call) {
  const BasicBlock &Entry = Call.getFunction()->getEntryBlock();
  return &Call == Entry.getFirstNonPHIOrDbg() &&
         isa<ReturnInst>(Call.getNextNonDebugInstruction());
}

SmallVector<CallInst *, 4>
llvm::inlinerecursion::findHoistableCalls(Function &F) {
  SmallVector<CallInst *, 4> Hoistable;
  MapVector<Function *, SmallVector<CallInst *, 4>> CallsIn;
  for (CallInst *Call : findCallsOf(F)) {
    if (isSelfCall(*Call))
      continue;
    // What hands a sum on is called by one that begins it.
    if (isAllOf(*Call))
      append_range(Hoistable, findHoistableCalls(*Call->getFunction()));
    else
      CallsIn[Call->getFunction()].push_back(Call);
  }
  for (auto &[Caller, Calls] : CallsIn) {
    const DominatorTree DT(*Caller);
    const LoopInfo LI(DT);
    copy_if(Calls, std::back_inserter(Hoistable), [&](const CallInst *Call) {
      const Loop *L = LI.getLoopFor(Call->getParent());
      return L && all_of(Call->args(), [L](const Value *Argument) {
               return isInvariant(Argument, *L);
             });
    });
  }
  return Hoistable;
}
