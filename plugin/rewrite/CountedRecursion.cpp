//===- CountedRecursion.cpp - Recursion that counts -----------------------===//

#include "plugin/rewrite/CountedRecursion.h"
#include "plugin/ir/ForwardingCall.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/CFG.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/Analysis/ValueTracking.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/ConstantRange.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/PatternMatch.h"
#include "llvm/Transforms/Utils/BasicBlockUtils.h"
#include "llvm/Transforms/Utils/Local.h"

using namespace llvm;
using namespace llvm::PatternMatch;
using namespace llvm::inlinerecursion;

namespace {
/// A comparison of an argument with constants, and what it ends.
struct EndTest {
  Argument *Tested;
  /// What widens the argument before it is compared, if anything.
  std::optional<Instruction::CastOps> Widening;
  /// With these values, as they are compared, an activation makes no self call.
  SmallVector<ConstantRange, 2> Ends;
  /// Where it goes on with all others.
  const BasicBlock *Onward;

  bool isEnd(const APInt &Value) const {
    return any_of(Ends, [&](const ConstantRange &R) {
      if (!Widening)
        return R.contains(Value);
      return R.contains(*Widening == Instruction::SExt
                            ? Value.sext(R.getBitWidth())
                            : Value.zext(R.getBitWidth()));
    });
  }
};
} // namespace

/// Lets \p Test be about \p Compared, if that is an argument.
static bool setTested(EndTest &Test, Value *Compared) {
  // Instructions are not combined yet.
  if (auto *Cast = dyn_cast<CastInst>(Compared);
      isa_and_nonnull<ZExtInst, SExtInst>(Cast)) {
    Test.Widening = Cast->getOpcode();
    Compared = Cast->getOperand(0);
  }
  Test.Tested = dyn_cast<Argument>(Compared);
  return Test.Tested;
}

/// The test at the end of the entry block of \p F, of which one successor leads
/// to \p Calls.
static std::optional<EndTest> findEndTest(Function &F,
                                          ArrayRef<CallBase *> Calls) {
  BasicBlock &Entry = F.getEntryBlock();
  // The test is going to be made first.  So it has to be made in any case: what
  // an argument without a value does to it is undefined behaviour.
  if (!isGuaranteedToTransferExecutionToSuccessor(&Entry))
    return std::nullopt;
  auto LeadsToCalls = [&](const BasicBlock *BB) {
    return any_of(Calls, [BB](const CallBase *Call) {
      return isPotentiallyReachable(BB, Call->getParent());
    });
  };
  EndTest Test;
  Instruction *Terminator = Entry.getTerminator();
  ICmpInst::Predicate Predicate;
  Value *Compared;
  ConstantInt *With;
  BasicBlock *IfTrue, *IfFalse;
  if (match(Terminator,
            m_Br(m_c_ICmp(Predicate, m_Value(Compared), m_ConstantInt(With)),
                 IfTrue, IfFalse))) {
    const bool EndsIfTrue = !LeadsToCalls(IfTrue);
    if (!setTested(Test, Compared) || (!EndsIfTrue && LeadsToCalls(IfFalse)))
      return std::nullopt;
    if (!EndsIfTrue)
      Predicate = ICmpInst::getInversePredicate(Predicate);
    Test.Ends = {
        ConstantRange::makeExactICmpRegion(Predicate, With->getValue())};
    Test.Onward = EndsIfTrue ? IfFalse : IfTrue;
    return Test;
  }
  auto *Switch = dyn_cast<SwitchInst>(Terminator);
  if (!Switch || !setTested(Test, Switch->getCondition()))
    return std::nullopt;
  Test.Onward = Switch->getDefaultDest();
  for (const auto &Case : Switch->cases()) {
    if (Case.getCaseSuccessor() == Test.Onward)
      continue;
    if (LeadsToCalls(Case.getCaseSuccessor()))
      return std::nullopt;
    Test.Ends.push_back(Case.getCaseValue()->getValue());
  }
  return Test;
}

/// Is \p Call made on each way from \p From to a return?
static bool isMadeBeforeReturn(const CallBase &Call, const BasicBlock &From) {
  SmallPtrSet<const BasicBlock *, 16> Reached;
  SmallVector<const BasicBlock *, 16> Worklist = {&From};
  while (!Worklist.empty()) {
    const BasicBlock *BB = Worklist.pop_back_val();
    if (BB == Call.getParent() || !Reached.insert(BB).second)
      continue;
    if (isa<ReturnInst>(BB->getTerminator()))
      return false;
    append_range(Worklist, successors(BB));
  }
  return true;
}

/// What all of \p Calls add to \p Counter, if they do.
static std::optional<APInt> findCommonStep(Argument &Counter,
                                           ArrayRef<CallBase *> Calls,
                                           ScalarEvolution &SE) {
  std::optional<APInt> Common;
  for (const CallBase *Call : Calls) {
    const auto *Step = dyn_cast<SCEVConstant>(
        SE.getMinusSCEV(SE.getSCEV(Call->getArgOperand(Counter.getArgNo())),
                        SE.getSCEV(&Counter)));
    if (!Step || (Common && *Common != Step->getAPInt()))
      return std::nullopt;
    Common = Step->getAPInt();
  }
  return Common;
}

/// The values that lead to \p Last by \p Step, beginning with it, as long as no
/// other one meets \p Test.  At most \p MaxLevels more than that.
static SmallVector<APInt, 8> findValuesBefore(const APInt &Last,
                                              const APInt &Step,
                                              const EndTest &Test,
                                              unsigned MaxLevels) {
  SmallVector<APInt, 8> Values = {Last};
  for (APInt Value = Last - Step;
       Values.size() <= MaxLevels && !Test.isEnd(Value); Value -= Step)
    Values.push_back(Value);
  return Values;
}

std::optional<RecursionCounter> llvm::inlinerecursion::findRecursionCounter(
    Function &F, ArrayRef<CallBase *> Calls, unsigned MaxLevels,
    ScalarEvolution &SE) {
  if (Calls.size() < 2)
    return std::nullopt;
  const std::optional<EndTest> Test = findEndTest(F, Calls);
  if (!Test)
    return std::nullopt;
  const std::optional<APInt> Step = findCommonStep(*Test->Tested, Calls, SE);
  // One value may be missed by larger steps.
  if (!Step || !Step->abs().isOne())
    return std::nullopt;

  // Of several values that end it, the one with the most others before it.
  SmallVector<APInt, 8> Values;
  for (const ConstantRange &End : Test->Ends)
    for (const APInt &Bound : {End.getLower(), End.getUpper() - 1}) {
      const APInt Last = Bound.trunc(Step->getBitWidth());
      if (!Test->isEnd(Last))
        continue;
      auto Before = findValuesBefore(Last, *Step, *Test, MaxLevels);
      if (Before.size() > Values.size())
        Values = std::move(Before);
    }
  if (Values.empty())
    return std::nullopt;

  RecursionCounter Result = {Test->Tested, {}, /*IsComplete=*/false};
  for (const APInt &Value : Values)
    Result.Values.push_back(ConstantInt::get(F.getContext(), Value));
  Result.IsComplete = all_of(Calls, [&Test](const CallBase *Call) {
    return isMadeBeforeReturn(*Call, *Test->Onward);
  });
  return Result;
}

void llvm::inlinerecursion::fixCounter(Function &Copy,
                                       const RecursionCounter &Counter,
                                       unsigned Levels) {
  Copy.getArg(Counter.Counter->getArgNo())
      ->replaceAllUsesWith(Counter.Values[Levels]);
  // The test is known, and for the last activation the self calls are gone.
  BasicBlock &Entry = Copy.getEntryBlock();
  SimplifyInstructionsInBlock(&Entry);
  ConstantFoldTerminator(&Entry, /*DeleteDeadConditions=*/true);
  removeUnreachableBlocks(Copy);
}

void llvm::inlinerecursion::enterLeaves(
    Function &F, Argument &Counter,
    ArrayRef<std::pair<ConstantInt *, Function *>> Entries) {
  BasicBlock *Body = &F.getEntryBlock();
  // A variable outside the entry block is made anew by every trip of a loop
  // around it, which a tail call may become.
  SmallVector<AllocaInst *, 4> Variables;
  for (Instruction &I : *Body)
    if (auto *Alloca = dyn_cast<AllocaInst>(&I))
      if (Alloca->isStaticAlloca())
        Variables.push_back(Alloca);
  BasicBlock *Entry = BasicBlock::Create(F.getContext(), "", &F, Body);
  Entry->takeName(Body);
  auto *Switch = SwitchInst::Create(&Counter, Body, Entries.size(), Entry);
  for (AllocaInst *Variable : Variables)
    Variable->moveBefore(Switch);
  for (auto [Value, Leaves] : Entries)
    Switch->addCase(Value, &createForwardingCall(F, *Leaves));
}
