//===- RefusedRequests.cpp - Rings in the place of the pass ---------------===//

#include "plugin/literal/RefusedRequests.h"
#include "host/DirectCalls.h"
#include "host/FunctionSpecializeAction.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/RingSize.h"
#include "plugin/literal/Reasons.h"
#include "plugin/literal/RingAlignment.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Remarks.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

/// Has the pass refused the ring that the source of \p F asks for?  Not where
/// it has granted one and found no room for its copies.
static bool isRefusedByPass(const Function &F) {
  return asksForRing(F) && !F.hasFnAttribute(EligibleMark) && !judgeFilter(F) &&
         isDirectlyRecursive(F);
}

static bool hasPlainSelfCall(const Function &F) {
  return anyCallOf(F, [](const CallInst &Call) { return isSelfCall(Call); });
}

/// Why no copies of \p F, of which there is no alignment, can stand for the
/// remainders that it takes.
static Verdict explainNoAlignment(const Function &F) {
  if (F.isVarArg())
    return refuse("RequestVariableArguments", "take a va_list in place of them")
           << "it takes variable arguments, which cannot be handed on";
  if (any_of(F.args(), [](const Argument &A) {
        return A.hasPassPointeeByValueCopyAttr();
      }))
    return refuse("RequestByValue", "pass it by pointer")
           << "an argument is copied to the stack by every call";
  if (!hasPlainSelfCall(F))
    return refuse("NoPlainSelfCall", "declare it noexcept")
           << "it calls itself only by invoke, never by a plain call";

  const auto Remainders = findRemainders(F, MaxRemainders);
  if (Remainders.empty())
    return refuse("NoRemainder",
                  "begin it with one, or start it with constants "
                  "and hand on what follows from them")
           << "its entry block takes no remainder of an argument by a constant "
              "from 2 to "
           << NV("Limit", MaxRemainders);
  const auto &A = *cast<Argument>(Remainders.front()->getOperand(0));
  const auto &Divisor = *cast<ConstantInt>(Remainders.front()->getOperand(1));
  return refuse("NoConstantStep", "hand on that argument and a constant, or "
                                  "start it with constants")
         << "not all of its self calls step argument "
         << NV("Argument", A.getArgNo() + 1)
         << ", of which it takes the remainder by "
         << NV("Divisor", unsigned(Divisor.getZExtValue()))
         << ", by a constant";
}

/// How a ring of \p F that the pass has refused can be aligned.
static std::optional<RingAlignment> findRefusedAlignment(Function &F) {
  if (!hasPlainSelfCall(F))
    return std::nullopt;
  return findAlignment(F, &F, MaxRemainders);
}

bool llvm::inlinerecursion::mayBuildRefused(Function &F) {
  if (!isRefusedByPass(F))
    return false;
  const auto Alignment = findRefusedAlignment(F);
  return Alignment && !judgeRingSize(F, Alignment->Divisor);
}

/// Puts constants into the rings of \p Copies, as the pass does with those that
/// it has built.
static void specialize(Module &M, const SmallPtrSetImpl<Function *> &Copies) {
  FunctionSpecializeAction Action;
  auto Selected = Action.selectCI(M, /*OnlyEligible=*/true);
  for (auto I = Selected.begin(); I != Selected.end();)
    I = Copies.contains(I->first) ? std::next(I) : Selected.erase(I);
  Action.transform(M, Selected, /*Excluded=*/{});
}

bool llvm::inlinerecursion::buildRefusedRings(Module &M,
                                              FunctionAnalysisManager &FAM,
                                              bool AutoFollows) {
  SmallVector<Function *, 4> Refused;
  for (Function &F : M) {
    if (isRefusedByPass(F))
      Refused.push_back(&F);
    else if (asksForRing(F) && !F.isDeclaration() && !hasCloneMark(F))
      warnAboutRequest(F, explainRefusedRing(F));
  }

  Driver D(FAM, /*Level=*/0, /*LongestRing=*/0);
  SmallPtrSet<Function *, 16> Copies;
  for (Function *F : Refused) {
    const auto Alignment = findRefusedAlignment(*F);
    std::optional<Verdict> Why;
    if (!Alignment)
      Why = explainNoAlignment(*F);
    else
      Why = judgeRingSize(*F, Alignment->Divisor);
    if (!Why) {
      F->addFnAttr(EligibleMark);
      for (Function *Copy :
           D.buildCopies(*F, Alignment->Divisor, /*AsRing=*/true))
        Copies.insert(Copy);
    } else if (AutoFollows) {
      F->addFnAttr(RefusedMark,
                   (Why->Name + " " + Why->str() + "\n" + Why->Remedy).str());
    } else {
      warnAboutRequest(*F, *Why);
    }
  }
  if (Copies.empty())
    return false;
  specialize(M, Copies);
  return true;
}
