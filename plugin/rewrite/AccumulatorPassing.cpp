//===- AccumulatorPassing.cpp - Sums handed on from call to call ----------===//

#include "plugin/rewrite/AccumulatorPassing.h"
#include "plugin/ir/ExtendedCopy.h"
#include "plugin/ir/ForwardingCall.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Transforms/Utils/Local.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

//===----------------------------------------------------------------------===//
// Finding
//===----------------------------------------------------------------------===//

/// The operation that combines results of \p Calls; none if there is not one.
static std::optional<Instruction::BinaryOps>
findOperation(ArrayRef<CallBase *> Calls) {
  for (const CallBase *Call : Calls)
    for (const User *U : Call->users())
      if (const auto *Operation = dyn_cast<BinaryOperator>(U))
        return Operation->isAssociative() && Operation->isCommutative()
                   ? std::optional(Operation->getOpcode())
                   : std::nullopt;
  return std::nullopt;
}

namespace {
/// Finds what becomes of the operations of a sum.
class StepFinder {
public:
  StepFinder(Accumulation &Sum, const DominatorTree &DT) : Sum(Sum), DT(DT) {}

  /// Works out what becomes of \p Operation, at least one of whose operands is
  /// a sum, and remembers it.  False if its sums cannot be handed on.
  bool findStep(BinaryOperator &Operation) {
    if (Sum.Steps.count(&Operation))
      return true;
    auto IsSum = [this](Value *V) {
      auto *I = dyn_cast<Instruction>(V);
      return I && Sum.Sums.contains(I);
    };
    for (unsigned I : {0u, 1u}) {
      auto *Call = dyn_cast<CallInst>(Operation.getOperand(1 - I));
      if (Call && IsSum(Call) && Call->hasOneUse() &&
          isAvailable(Operation.getOperand(I), *Call)) {
        Sum.Steps[&Operation] = {I, Call};
        return true;
      }
    }
    const bool IsFirst = IsSum(Operation.getOperand(0));
    if (IsFirst && IsSum(Operation.getOperand(1)))
      return false;
    Sum.Steps[&Operation] = {IsFirst ? 0u : 1u, nullptr};
    return true;
  }

private:
  /// Is \p V, added to the accumulator, there when \p Call is made?
  bool isAvailable(Value *V, const CallInst &Call) {
    auto *I = dyn_cast<Instruction>(V);
    auto *Operation = dyn_cast<BinaryOperator>(V);
    if (!I || !Operation || !Sum.Sums.contains(I))
      return !I || DT.dominates(I, &Call);
    // What a call takes over is there as soon as that has been made.
    if (!findStep(*Operation))
      return false;
    const CallInst *By = Sum.Steps[Operation].TakenOverBy;
    return DT.dominates(By ? cast<Instruction>(By) : I, &Call);
  }

  Accumulation &Sum;
  const DominatorTree &DT;
};
} // namespace

/// Can \p F be given one more argument, and its self \p Calls with it?
static bool canBeExtended(const Function &F, ArrayRef<CallBase *> Calls) {
  return F.getReturnType()->isIntegerTy() && !F.isVarArg() &&
         F.arg_size() < MaxArguments &&
         all_of(Calls,
                [](const CallBase *Call) {
                  return isa<CallInst>(Call) && !Call->hasOperandBundles() &&
                         !Call->use_empty();
                }) &&
         // What such a call brings is returned as it is.
         none_of(instructions(F), [](const Instruction &I) {
           const auto *Call = dyn_cast<CallInst>(&I);
           return Call && Call->isMustTailCall();
         });
}

std::optional<Accumulation>
llvm::inlinerecursion::findAccumulation(Function &F, const DominatorTree &DT) {
  const SmallVector<CallBase *, 4> Calls = findSelfCalls(F);
  const std::optional<Instruction::BinaryOps> Opcode = findOperation(Calls);
  if (!Opcode || !canBeExtended(F, Calls))
    return std::nullopt;

  Accumulation Sum;
  Sum.Opcode = *Opcode;
  Sum.Sums.insert(Calls.begin(), Calls.end());
  for (unsigned I = 0; I != Sum.Sums.size(); ++I)
    for (User *U : Sum.Sums[I]->users()) {
      auto *Operation = dyn_cast<BinaryOperator>(U);
      if (isa<ReturnInst>(U))
        continue;
      if (!isa<PHINode>(U) && !(Operation && Operation->getOpcode() == *Opcode))
        return std::nullopt;
      Sum.Sums.insert(cast<Instruction>(U));
    }

  for (Instruction *I : Sum.Sums) {
    // There, an operation may be its own operand.
    if (!DT.isReachableFromEntry(I->getParent()))
      return std::nullopt;
    // Nothing can be added to it on the edge behind it.
    const auto *Phi = dyn_cast<PHINode>(I);
    if (Phi && any_of(Phi->incoming_values(), [&](const Use &U) {
          const auto *Incoming = dyn_cast<Instruction>(U);
          return (Incoming && Incoming->isTerminator()) ||
                 Phi->getIncomingBlock(U)->getTerminator()->isEHPad();
        }))
      return std::nullopt;
  }
  StepFinder Finder(Sum, DT);
  for (Instruction *I : Sum.Sums)
    if (auto *Operation = dyn_cast<BinaryOperator>(I))
      if (!Finder.findStep(*Operation))
        return std::nullopt;
  return Sum;
}

//===----------------------------------------------------------------------===//
// Passing it on
//===----------------------------------------------------------------------===//

namespace {
/// Rewrites the copy of a function that has an accumulator as its last
/// argument, such that it returns what it returned, added to that.
class AccumulatorRewriter {
public:
  /// \p Sum is that of the function that \p Copy is a copy of, from whose
  /// instructions \p Copied leads to those of \p Copy.
  AccumulatorRewriter(Function &Copy, const Accumulation &Sum,
                      const ValueToValueMapTy &Copied)
      : Copy(Copy), Accumulator(*std::prev(Copy.arg_end())),
        Opcode(Sum.Opcode) {
    auto InCopy = [&Copied](Instruction *I) {
      return cast<Instruction>(Copied.lookup(I));
    };
    for (Instruction *I : Sum.Sums)
      Sums.insert(InCopy(I));
    for (auto [Operation, Step] : Sum.Steps)
      Steps[InCopy(Operation)] = {Step.SumOperand,
                                  Step.TakenOverBy
                                      ? cast<CallInst>(InCopy(Step.TakenOverBy))
                                      : nullptr};
  }

  void run() {
    // Sums go round in loops by way of PHIs.
    for (Instruction *I : Sums)
      if (isa<PHINode>(I))
        Accumulated[I] = PHINode::Create(I->getType(), I->getNumOperands(),
                                         I->getName() + ".sum", I);
    for (Instruction *I : Sums)
      if (auto *Phi = dyn_cast<PHINode>(I))
        accumulateIncoming(*Phi, *cast<PHINode>(Accumulated[Phi]));
    // Even where the sum is not used, its calls are made.
    for (Instruction *I : Sums)
      if (isa<BinaryOperator>(I))
        accumulate(I, *I);
    for (BasicBlock &BB : Copy)
      if (auto *Return = dyn_cast<ReturnInst>(BB.getTerminator()))
        Return->setOperand(0, accumulate(Return->getReturnValue(), *Return));
    for (Instruction *I : Sums)
      I->replaceAllUsesWith(PoisonValue::get(I->getType()));
    for (Instruction *I : Sums)
      I->eraseFromParent();
  }

private:
  /// \p V added to the accumulator; what has to be computed for that and is no
  /// sum itself is computed at \p Before.
  Value *accumulate(Value *V, Instruction &Before) {
    auto *I = dyn_cast<Instruction>(V);
    if (!I || !Sums.contains(I)) {
      const Constant *Identity =
          ConstantExpr::getBinOpIdentity(Opcode, V->getType());
      return V == Identity
                 ? static_cast<Value *>(&Accumulator)
                 : BinaryOperator::Create(Opcode, &Accumulator, V, "", &Before);
    }
    if (Value *Known = Accumulated.lookup(I))
      return Known;
    return Accumulated[I] = accumulateSum(*I);
  }

  void accumulateIncoming(PHINode &Phi, PHINode &NewPhi) {
    // Several edges from one block bring the same.
    DenseMap<BasicBlock *, Value *> Incoming;
    for (auto [V, From] : zip(Phi.incoming_values(), Phi.blocks())) {
      Value *&New = Incoming[From];
      if (!New)
        New = accumulate(V, *From->getTerminator());
      NewPhi.addIncoming(New, From);
    }
  }

  Value *accumulateSum(Instruction &I) {
    if (auto *Call = dyn_cast<CallInst>(&I))
      return callWith(Accumulator, *Call);
    const Accumulation::Step Step = Steps.lookup(&I);
    Value *SumSoFar = I.getOperand(Step.SumOperand);
    if (Step.TakenOverBy)
      return callWith(*accumulate(SumSoFar, *Step.TakenOverBy),
                      *Step.TakenOverBy);
    auto *Operation =
        BinaryOperator::Create(Opcode, accumulate(SumSoFar, I),
                               I.getOperand(1 - Step.SumOperand), "", &I);
    Operation->setDebugLoc(I.getDebugLoc());
    return Operation;
  }

  /// What \p Call would bring, added to \p SumSoFar.
  CallInst *callWith(Value &SumSoFar, CallInst &Call) {
    SmallVector<Value *, 8> Args(Call.args());
    Args.push_back(&SumSoFar);
    auto *NewCall =
        CallInst::Create(&Copy, Args, Call.getName() + ".sum", &Call);
    NewCall->setCallingConv(Call.getCallingConv());
    NewCall->setTailCallKind(Call.getTailCallKind());
    NewCall->setDebugLoc(Call.getDebugLoc());
    AttributeList Attrs = Call.getAttributes();
    for (unsigned A = 0; A != Call.arg_size(); ++A)
      Attrs =
          Attrs.removeParamAttribute(Call.getContext(), A, Attribute::Returned);
    // Of what is a part of a sum only, less is known.
    NewCall->setAttributes(
        Attrs.removeRetAttribute(Call.getContext(), Attribute::NoUndef));
    return NewCall;
  }

  Function &Copy;
  Argument &Accumulator;
  Instruction::BinaryOps Opcode;
  SetVector<Instruction *> Sums;
  DenseMap<const Instruction *, Accumulation::Step> Steps;
  DenseMap<const Instruction *, Value *> Accumulated;
};
} // namespace

Function &llvm::inlinerecursion::passAccumulator(Function &F,
                                                 const Accumulation &Sum) {
  ValueToValueMapTy Copied;
  Function &Copy = createExtendedCopy(F, F.getReturnType(), SumSuffix, Copied);
  Copy.removeRetAttr(Attribute::NoUndef);
  for (Argument &A : Copy.args())
    A.removeAttr(Attribute::Returned);
  AccumulatorRewriter(Copy, Sum, Copied).run();

  Value *Nothing =
      ConstantExpr::getBinOpIdentity(Sum.Opcode, F.getReturnType());
  BasicBlock &Onward = createForwardingCall(F, Copy, Nothing);
  Onward.moveBefore(&F.getEntryBlock());
  removeUnreachableBlocks(F);
  return Copy;
}
