//===- EntrySplit.cpp - What a recursion does before its test -------------===//

#include "plugin/rewrite/EntrySplit.h"
#include "plugin/ir/ExtendedCopy.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Transforms/Utils/BasicBlockUtils.h"
#include "llvm/Transforms/Utils/Cloning.h"
#include "llvm/Transforms/Utils/Local.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// The blocks that can be reached from \p Begin, with it.
static SmallPtrSet<const BasicBlock *, 16>
findReachable(ArrayRef<BasicBlock *> Begin) {
  SmallPtrSet<const BasicBlock *, 16> Reached;
  SmallVector<BasicBlock *, 16> Worklist(Begin);
  while (!Worklist.empty()) {
    BasicBlock *BB = Worklist.pop_back_val();
    if (Reached.insert(BB).second)
      append_range(Worklist, successors(BB));
  }
  return Reached;
}

/// Is \p I the test itself, or can it be made twice with it?
static bool isOfTest(const Instruction &I) {
  return I.isTerminator() || isRepeatable(I);
}

/// The first of the last instructions of \p BB that all are of the test.
static Instruction &findFirstOfTest(BasicBlock &BB) {
  Instruction *First = BB.getTerminator();
  while (First != &BB.front() && isOfTest(*First->getPrevNode()))
    First = First->getPrevNode();
  return *First;
}

/// Where the rest of \p F begins if it does so with the test of \p Head.
static EntrySplit splitBeforeTest(const EntryGuard &Head) {
  BasicBlock *Test = Head.Blocks.back();
  Instruction &First = findFirstOfTest(*Test);
  if (&First != &Test->front())
    return {Head, Test, Test, &First, {}, {}};
  BasicBlock *Before =
      Head.Blocks.size() > 1 ? *std::prev(Head.Blocks.end(), 2) : nullptr;
  return {Head, Test, Before, nullptr, {}, {}};
}

/// Where the rest of \p F begins, nothing handed over yet.
static EntrySplit findBegin(const EntryGuard &Head) {
  BasicBlock *Test = Head.Blocks.back();
  if (Head.Beyond.size() > 1)
    return splitBeforeTest(Head);
  BasicBlock *Beyond = Head.Beyond.front();
  // The head of a loop.
  if (findReachable(Beyond).contains(Test) && Head.Blocks.size() > 1 &&
      all_of(*Test, isOfTest))
    return splitBeforeTest(Head);
  return {Head, Beyond, Test, nullptr, {}, {}};
}

namespace {
/// Which instructions of a function the rest of it consists of.
class RestOfFunction {
public:
  explicit RestOfFunction(const EntrySplit &Split)
      : Split(Split),
        Blocks(Split.FirstOfTest ? findReachable(Split.Head.Beyond)
                                 : findReachable(Split.Begin)) {}

  /// The blocks of the head, but for one that the rest begins with.
  auto getHeadBlocks() const {
    return make_filter_range(Split.Head.Blocks, [this](const BasicBlock *BB) {
      return Split.FirstOfTest || BB != Split.Begin;
    });
  }

  bool contains(const BasicBlock *BB) const { return Blocks.contains(BB); }

  bool contains(const Instruction *I) const {
    if (Split.FirstOfTest && I->getParent() == Split.Begin)
      return !I->comesBefore(Split.FirstOfTest);
    return Blocks.contains(I->getParent());
  }

  /// Is \p U a use in the rest, or on the way there?
  bool contains(const Use &U) const {
    const auto *User = cast<Instruction>(U.getUser());
    const auto *Phi = dyn_cast<PHINode>(User);
    if (!Phi)
      return contains(User);
    const BasicBlock *From = Phi->getIncomingBlock(U);
    return contains(From->getTerminator()) ||
           (From == Split.Before && Phi->getParent() == Split.Begin);
  }

private:
  const EntrySplit &Split;
  const SmallPtrSet<const BasicBlock *, 16> Blocks;
};
} // namespace

/// Can \p Split begin its rest where it says, with one way to there?
static bool hasClearBegin(const EntrySplit &Split, const RestOfFunction &Rest) {
  if (any_of(Rest.getHeadBlocks(),
             [&Rest](const BasicBlock *BB) { return Rest.contains(BB); }))
    return false;
  // A variable is one as long as it stands in the entry block.
  if (Split.FirstOfTest)
    return none_of(
        make_range(Split.FirstOfTest->getIterator(), Split.Begin->end()),
        [](const Instruction &I) { return isa<AllocaInst>(I); });
  return !Split.Before || count(successors(Split.Before), Split.Begin) == 1;
}

/// Adds \p I of the head to what \p Split hands over, if \p Rest uses it. False
/// if that cannot be done.
static bool handOver(Instruction &I, const RestOfFunction &Rest,
                     EntrySplit &Split) {
  auto IsInRest = [&Rest](const Use &U) { return Rest.contains(U); };
  if (none_of(I.uses(), IsInRest))
    return true;
  if (auto *Alloca = dyn_cast<AllocaInst>(&I)) {
    Split.Variables.push_back(Alloca);
    // It would have two addresses.
    return Alloca->isStaticAlloca() && all_of(I.uses(), IsInRest);
  }
  Split.LiveValues.push_back(&I);
  return !I.getType()->isTokenTy();
}

std::optional<EntrySplit>
llvm::inlinerecursion::findEntrySplit(Function &F, unsigned MaxSize,
                                      bool InlinerFollows) {
  std::optional<EntryGuard> Head =
      findEntryGuard(F, MaxSize, /*IsRepeated=*/false);
  if (!Head)
    return std::nullopt;
  EntrySplit Split = findBegin(*Head);
  const RestOfFunction Rest(Split);
  if (!hasClearBegin(Split, Rest))
    return std::nullopt;

  for (BasicBlock *BB : Rest.getHeadBlocks())
    for (Instruction &I : *BB) {
      if (&I == Split.FirstOfTest)
        break;
      const auto *Call = dyn_cast<CallBase>(&I);
      if (InlinerFollows && Call && Call->getCalledFunction() &&
          !Call->getCalledFunction()->isDeclaration())
        return std::nullopt;
      if (!handOver(I, Rest, Split))
        return std::nullopt;
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
  Function *Rest = &createExtendedCopy(F, Types, RestSuffix, VMap);
  // What is handed over may point to the same as the argument it comes from.
  for (Argument &A : Rest->args())
    A.removeAttr(Attribute::NoAlias);

  for (auto [I, Live] : enumerate(Split.LiveValues)) {
    Argument *HandedOver = Rest->getArg(F.arg_size() + I);
    HandedOver->takeName(VMap[Live]);
    VMap[Live]->replaceAllUsesWith(HandedOver);
  }
  if (!Split.Before)
    return *Rest;
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

Function &llvm::inlinerecursion::splitEntry(Function &F, EntrySplit Split) {
  if (Split.FirstOfTest) {
    Split.Begin = SplitBlock(Split.Before, Split.FirstOfTest);
    Split.Head.Blocks.push_back(Split.Begin);
  }
  Function &Rest = cloneRest(F, Split);
  reduceToGuard(F, Split.Head, Rest, Split.LiveValues);
  for (CallBase *Call : findCalls(Rest, F)) {
    InlineFunctionInfo Info;
    InlineFunction(*Call, Info);
  }
  return Rest;
}
