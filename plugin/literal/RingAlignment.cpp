//===- RingAlignment.cpp - A copy for each remainder ----------------------===//

#include "plugin/literal/RingAlignment.h"
#include "host/BodyComparison.h"
#include "host/DirectCalls.h"
#include "plugin/ir/CloneChain.h"
#include "plugin/ir/ForwardingCall.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/ValueTracking.h"
#include "llvm/IR/IRBuilder.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/PatternMatch.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::PatternMatch;

/// Wider steps are not steps from copy to copy.
static constexpr unsigned MaxStepBits = 16;

/// The plain calls in \p Caller of one of \p Callees.
static SmallVector<CallInst *, 4> findPlainCalls(Function &Caller,
                                                 ArrayRef<Function *> Callees) {
  return findCallsIn(Caller, [Callees](const Function &Callee) {
    return is_contained(Callees, &Callee);
  });
}

/// The divisor of \p I, if that is a remainder of an argument by a constant in
/// [2, \p Most]; 0 if not.
static unsigned getDivisor(const Instruction &I, unsigned Most) {
  if ((I.getOpcode() != Instruction::URem &&
       I.getOpcode() != Instruction::SRem) ||
      !isa<Argument>(I.getOperand(0)))
    return 0;
  const auto *Divisor = dyn_cast<ConstantInt>(I.getOperand(1));
  if (!Divisor || !Divisor->getValue().isStrictlyPositive())
    return 0;
  const uint64_t Value = Divisor->getLimitedValue();
  return Value >= 2 && Value <= Most ? Value : 0;
}

/// By how much the argument \p A of its function is changed where \p Call hands
/// it on; none if by no constant.
static std::optional<int> getStep(const CallInst &Call, const Argument &A) {
  const Value *Next = Call.getArgOperand(A.getArgNo());
  if (Next == &A)
    return 0;
  const APInt *Constant;
  const bool IsSubtracted =
      match(Next, m_Sub(m_Specific(&A), m_APInt(Constant)));
  if (!IsSubtracted && !match(Next, m_Add(m_Specific(&A), m_APInt(Constant))))
    return std::nullopt;
  if (Constant->getSignificantBits() > MaxStepBits)
    return std::nullopt;
  const int Value = Constant->getSExtValue();
  return IsSubtracted ? -Value : Value;
}

/// Steps \p Call from some argument \p A that is not negative, and has the
/// remainder \p Remainder by \p Divisor, over the largest number?  Downwards,
/// what is not negative does not overflow.
static bool mayOverflow(const CallInst &Call, const Argument &A,
                        unsigned Remainder, unsigned Divisor) {
  const int Step = *getStep(Call, A);
  if (Step <= 0 ||
      cast<OverflowingBinaryOperator>(Call.getArgOperand(A.getArgNo()))
          ->hasNoSignedWrap())
    return false;
  const unsigned Last =
      APInt::getSignedMaxValue(A.getType()->getIntegerBitWidth()).urem(Divisor);
  // So far below the largest number is the next one with the remainder.
  return (Last + Divisor - Remainder) % Divisor < unsigned(Step);
}

SmallVector<const Instruction *, 2>
llvm::inlinerecursion::findRemainders(const Function &F, unsigned Most) {
  SmallVector<const Instruction *, 2> Remainders;
  for (const Instruction &I : F.getEntryBlock())
    if (getDivisor(I, Most))
      Remainders.push_back(&I);
  stable_sort(Remainders, [Most](const Instruction *L, const Instruction *R) {
    return getDivisor(*L, Most) > getDivisor(*R, Most);
  });
  return Remainders;
}

/// How copies of \p F can stand for the values of \p Remainder.
static std::optional<RingAlignment>
alignBy(const Instruction &Remainder, Function &F, ArrayRef<Function *> Links) {
  const auto &A = *cast<Argument>(Remainder.getOperand(0));
  const unsigned Divisor = getDivisor(Remainder, ~0u);
  unsigned Down = 0, Up = 0;
  for (const CallInst *Call : findPlainCalls(F, Links)) {
    const auto Step = getStep(*Call, A);
    if (!Step)
      return std::nullopt;
    Down += *Step < 0;
    Up += *Step > 0;
  }
  const bool MayWrap =
      Remainder.getOpcode() == Instruction::URem && isPowerOf2_32(Divisor);
  return RingAlignment{A.getArgNo(), Divisor, Down > Up, MayWrap};
}

std::optional<RingAlignment>
llvm::inlinerecursion::findAlignment(Function &F, ArrayRef<Function *> Links,
                                     unsigned Count) {
  // The caller's object, not a value that can be handed on.
  if (F.isVarArg() || any_of(F.args(), [](const Argument &A) {
        return A.hasPassPointeeByValueCopyAttr();
      }))
    return std::nullopt;

  // Of the largest divisor others may be divisors.
  for (const Instruction *Remainder : findRemainders(F, Count))
    if (auto Alignment = alignBy(*Remainder, F, Links))
      return Alignment;
  return std::nullopt;
}

std::optional<RingAlignment>
llvm::inlinerecursion::findAlignment(const CloneChain &Ring, unsigned Most) {
  // Named like copies of the origin, which a linker may see to, but no such.
  auto IsLink = [&Ring](const Function &F) {
    return &F == Ring.Origin || is_contained(Ring.Copies, &F);
  };
  if (!all_of(Ring.Copies, [&](const Function *Copy) {
        return haveSameBody(*Copy, *Ring.Origin, IsLink,
                            BodyComparison::AsCopied);
      }))
    return std::nullopt;
  // What nobody enters is to go away, unless it is asked for, and there may be
  // calls from elsewhere.
  const bool IsEnteredFromElsewhere =
      asksForRing(*Ring.Origin) && !Ring.Origin->hasLocalLinkage();
  auto IsEntry = [&Ring](const User *U) {
    const auto *Call = dyn_cast<CallInst>(U);
    return Call && !is_contained(Ring.Copies, Call->getFunction());
  };
  if (!IsEnteredFromElsewhere &&
      none_of(Ring.Copies, [&IsEntry](const Function *Copy) {
        return any_of(Copy->users(), IsEntry);
      }))
    return std::nullopt;

  const auto Alignment = findAlignment(*Ring.Copies.front(), Ring.Copies, Most);
  if (!all_of(Ring.Copies, [&](Function *Copy) {
        return findAlignment(*Copy, Ring.Copies, Most) == Alignment;
      }))
    return std::nullopt;
  return Alignment;
}

/// Lets \p Copy, which stands for \p Remainder, know it.
static void fixRemainder(Function &Copy, const RingAlignment &Alignment,
                         unsigned Remainder) {
  Argument &A = *Copy.getArg(Alignment.ArgNo);
  for (User *U : make_early_inc_range(A.users())) {
    auto *I = cast<Instruction>(U);
    const unsigned Divisor = getDivisor(*I, Alignment.Divisor);
    if (Divisor == 0 || Alignment.Divisor % Divisor != 0)
      continue;
    // Of what may be negative, the other remainder is another one.
    if (Alignment.MayWrap && I->getOpcode() != Instruction::URem)
      continue;
    I->replaceAllUsesWith(ConstantInt::get(I->getType(), Remainder % Divisor));
    I->eraseFromParent();
  }
}

/// Makes \p Ring one of \p Count copies if it is shorter.  Where the new ones
/// lead to is left to the caller.
static void lengthenRing(CloneChain &Ring, size_t Count) {
  auto &Functions = Ring.Origin->getParent()->getFunctionList();
  while (Ring.Copies.size() < Count) {
    ValueToValueMapTy VMap;
    Function &Copy = *CloneFunction(Ring.Copies.front(), VMap);
    Copy.setName(Ring.Origin->getName() + CloneSuffix);
    // Side by side, copies are found again.
    Copy.removeFromParent();
    Functions.insertAfter(Ring.Copies.back()->getIterator(), &Copy);
    Ring.Copies.push_back(&Copy);
  }
}

void llvm::inlinerecursion::alignRing(CloneChain &Ring,
                                      const RingAlignment &Alignment) {
  const int Divisor = Alignment.Divisor;
  auto &Copies = Ring.Copies;
  lengthenRing(Ring, Divisor);
  const SmallVector<Function *, 8> Surplus(Copies.begin() + Divisor,
                                           Copies.end());
  for (int K = 0; K != Divisor; ++K) {
    const Argument &A = *Copies[K]->getArg(Alignment.ArgNo);
    const int Remainder = Alignment.getRemainder(K);
    for (CallInst *Call : findPlainCalls(*Copies[K], Copies)) {
      const int Next = (Remainder + *getStep(*Call, A)) % Divisor;
      Call->setCalledFunction(
          Copies[Alignment.getCopy(Next < 0 ? Next + Divisor : Next)]);
    }
    fixRemainder(*Copies[K], Alignment, Remainder);
  }

  Copies.truncate(Divisor);
  auto IsFromOutside = [&Copies](const CallBase &Call) {
    return !is_contained(Copies, Call.getFunction());
  };
  for (Function *Copy : concat<Function *const>(Copies, Surplus))
    redirectCalls(*Copy, *Ring.Origin, IsFromOutside);
  for (Function *Copy : Surplus)
    if (Copy->use_empty())
      Copy->eraseFromParent();
}

/// Calls \p Target with the arguments of \p Entry, and returns what it does.
static BasicBlock &createCase(Function &Entry, Function &Target) {
  BasicBlock &Block = createForwardingCall(Entry, Target);
  // The origin need not be a copy, whose calls are completed later.
  AttributeList Attributes = Target.getAttributes();
  cast<CallInst>(Block.front())
      .setAttributes(Attributes.removeFnAttributes(Entry.getContext()));
  return Block;
}

/// A function of the type of \p F that is always inlined, without a body.
static Function &createInlined(Function &F, StringRef Suffix) {
  Function &New = *Function::Create(
      F.getFunctionType(), GlobalValue::InternalLinkage, F.getAddressSpace(),
      F.getName() + Suffix, F.getParent());
  New.copyAttributesFrom(&F);
  // Not as visible as the function.
  New.setLinkage(GlobalValue::InternalLinkage);
  New.removeFnAttr(Attribute::NoInline);
  New.addFnAttr(Attribute::AlwaysInline);
  return New;
}

/// The argument \p A, one value wherever it is used.
static Value *freezeArgument(Argument *A, IRBuilder<> &Builder) {
  return isGuaranteedNotToBeUndefOrPoison(A) ? A : Builder.CreateFreeze(A);
}

/// A function that enters \p Target, a copy of \p F, where \p F is called with
/// an argument number \p ArgNo that is not negative, and \p F otherwise.
static Function &createStep(Function &F, Function &Target, unsigned ArgNo) {
  Function &Step = createInlined(F, StepSuffix);
  IRBuilder<> Builder(BasicBlock::Create(F.getContext(), "", &Step));
  Value *A = freezeArgument(Step.getArg(ArgNo), Builder);
  Value *Overflows =
      Builder.CreateICmpSLT(A, ConstantInt::get(A->getType(), 0));
  BasicBlock &Otherwise = createCase(Step, F);
  Builder.CreateCondBr(Overflows, &Otherwise, &createCase(Step, Target));
  return Step;
}

/// A function that enters the copies of \p Ring that are not inlined, where
/// their remainder is given, and the function that it is made of otherwise.
static Function &createEntry(const CloneChain &Ring,
                             const RingAlignment &Alignment) {
  Function &F = *Ring.Origin;
  LLVMContext &Context = F.getContext();
  Function &Entry = createInlined(F, EntrySuffix);
  IRBuilder<> Builder(BasicBlock::Create(Context, "", &Entry));
  Value *A = freezeArgument(Entry.getArg(Alignment.ArgNo), Builder);
  BasicBlock &Otherwise = createCase(Entry, F);
  if (!Alignment.MayWrap) {
    auto *Test = BasicBlock::Create(Context, "", &Entry, &Otherwise);
    Builder.CreateCondBr(
        Builder.CreateICmpSGE(A, ConstantInt::get(A->getType(), 0)), Test,
        &Otherwise);
    Builder.SetInsertPoint(Test);
  }
  Value *Remainder =
      Builder.CreateURem(A, ConstantInt::get(A->getType(), Alignment.Divisor));
  SwitchInst *Switch = Builder.CreateSwitch(Remainder, &Otherwise);
  for (auto [K, Copy] : enumerate(Ring.Copies))
    if (!Copy->hasFnAttribute(Attribute::AlwaysInline))
      Switch->addCase(cast<ConstantInt>(ConstantInt::get(
                          A->getType(), Alignment.getRemainder(K))),
                      &createCase(Entry, *Copy));
  return Entry;
}

void llvm::inlinerecursion::enterAlignedRing(const CloneChain &Ring,
                                             const RingAlignment &Alignment) {
  Function &Entry = createEntry(Ring, Alignment);
  redirectCalls(*Ring.Origin, Entry, [&Entry](const CallBase &Call) {
    return Call.getFunction() != &Entry;
  });
  if (Alignment.MayWrap)
    return;
  DenseMap<Function *, Function *> Steps;
  for (auto [K, Copy] : enumerate(Ring.Copies)) {
    const Argument &A = *Copy->getArg(Alignment.ArgNo);
    const int Remainder = Alignment.getRemainder(K);
    for (CallInst *Call : findPlainCalls(*Copy, Ring.Copies)) {
      if (Remainder + *getStep(*Call, A) < 0)
        Call->setCalledFunction(&Entry);
      if (!mayOverflow(*Call, A, Remainder, Alignment.Divisor))
        continue;
      Function *&Step = Steps[Call->getCalledFunction()];
      if (!Step)
        Step = &createStep(*Ring.Origin, *Call->getCalledFunction(),
                           Alignment.ArgNo);
      Call->setCalledFunction(Step);
    }
  }
}
