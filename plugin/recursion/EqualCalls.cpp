//===- EqualCalls.cpp - Self calls that compute the same ------------------===//

#include "plugin/recursion/EqualCalls.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/IntrinsicInst.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// By how much \p Call steps each argument of \p F; empty if not by constants.
static SmallVector<const SCEVConstant *, 4>
findSteps(const CallBase &Call, Function &F, ScalarEvolution &SE) {
  SmallVector<const SCEVConstant *, 4> Steps;
  for (Argument &A : F.args()) {
    Value *Operand = Call.getArgOperand(A.getArgNo());
    if (!SE.isSCEVable(A.getType()) || A.getType()->isPointerTy())
      return {};
    const auto *Step = dyn_cast<SCEVConstant>(
        SE.getMinusSCEV(SE.getSCEV(Operand), SE.getSCEV(&A)));
    if (!Step)
      return {};
    Steps.push_back(Step);
  }
  return Steps;
}

/// Does \p F do nothing but read, compute and call itself?
static bool isPure(const Function &F) {
  return none_of(instructions(F), [&F](const Instruction &I) {
    if (const auto *Call = dyn_cast<CallBase>(&I))
      return Call->getCalledFunction() != &F && !Call->doesNotAccessMemory() &&
             !isa<DbgInfoIntrinsic>(Call);
    if (const auto *Load = dyn_cast<LoadInst>(&I))
      return !Load->isUnordered();
    return I.mayHaveSideEffects();
  });
}

bool llvm::inlinerecursion::hasEqualCalls(Function &F,
                                          ArrayRef<CallBase *> Calls,
                                          FunctionAnalysisManager &FAM) {
  if (Calls.size() < 2 || F.arg_empty() || !isPure(F))
    return false;
  auto &DT = FAM.getResult<DominatorTreeAnalysis>(F);
  if (none_of(drop_begin(Calls), [&](const CallBase *Call) {
        return DT.dominates(Calls.front(), Call);
      }))
    return false;

  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  SmallVector<SmallVector<const SCEVConstant *, 4>, 4> Steps;
  for (const CallBase *Call : Calls) {
    Steps.push_back(findSteps(*Call, F, SE));
    if (Steps.back().empty())
      return false;
  }
  auto IsNotLarger = [](const SCEVConstant *A, const SCEVConstant *B) {
    return A->getAPInt().isNegative() == B->getAPInt().isNegative() &&
           A->getAPInt().abs().ule(B->getAPInt().abs());
  };
  for (auto [Call, Step] : zip(Calls, Steps)) {
    if (!becomesLoop(*Call))
      continue;
    const bool IsCovered =
        any_of(zip(Calls, Steps), [&, Call = Call, &Step = Step](auto P) {
          const CallBase &Other = *std::get<0>(P);
          return !becomesLoop(Other) && DT.dominates(&Other, Call) &&
                 all_of(zip(std::get<1>(P), Step), [&](auto Pair) {
                   return IsNotLarger(std::get<0>(Pair), std::get<1>(Pair));
                 });
        });
    if (!IsCovered)
      return false;
  }
  return true;
}

bool llvm::inlinerecursion::hasEqualCallsAcrossLevels(
    Function &F, ArrayRef<CallBase *> Calls, ScalarEvolution &SE) {
  SmallVector<SmallVector<const SCEVConstant *, 4>, 4> Steps;
  for (const CallBase *Call : Calls)
    Steps.push_back(findSteps(*Call, F, SE));
  auto IsSum = [&](const auto &First, const auto &Second, const auto &Both) {
    return all_of(zip(First, Second, Both), [](auto Triple) {
      const auto [A, B, C] = Triple;
      return A->getAPInt() + B->getAPInt() == C->getAPInt();
    });
  };
  return any_of(Steps, [&](const auto &Both) {
    return any_of(Steps, [&](const auto &First) {
      return any_of(Steps, [&](const auto &Second) {
        return IsSum(First, Second, Both);
      });
    });
  });
}
