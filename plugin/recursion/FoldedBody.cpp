//===- FoldedBody.cpp - A function with known arguments -------------------===//

#include "plugin/recursion/FoldedBody.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/BlockFrequencyInfo.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/Analysis/TargetLibraryInfo.h"
#include "llvm/Analysis/TargetTransformInfo.h"
#include "llvm/Analysis/ValueLattice.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/IR/Module.h"
#include "llvm/Transforms/Utils/SCCPSolver.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// What a call through a pointer takes more than one by name, which may also be
/// inlined.  As the inliner sees it (InlineConstants::IndirectCallThreshold),
/// in instructions.
static constexpr double IndirectCallCost = 20;

/// The trips up to which a loop is worth more where their number is known: what
/// LLVM unrolls completely.
static constexpr unsigned MaxUnrolledTrips = 16;
/// The part of the body of such a loop that folds when it is unrolled: its
/// counter and what is computed of it.
static constexpr double UnrolledShare = 0.5;

FoldedBody::FoldedBody(Function &F, FunctionAnalysisManager &FAM)
    : F(F), FAM(FAM), Frequencies(FAM.getResult<BlockFrequencyAnalysis>(F)) {
  solve(ArgumentTuple(F.arg_size()));
  for (const Instruction &I : instructions(F))
    if (isFolded(I))
      FoldedAnyway.insert(&I);
}

FoldedBody::~FoldedBody() = default;

void FoldedBody::solve(ArgumentTuple Tuple) {
  Known = std::move(Tuple);
  Solver = std::make_unique<SCCPSolver>(
      F.getParent()->getDataLayout(),
      [this](Function &F) -> const TargetLibraryInfo & {
        return FAM.getResult<TargetLibraryAnalysis>(F);
      },
      F.getContext());
  SmallVector<ArgInfo, 4> Constants;
  for (Argument &A : F.args())
    if (Constant *C = Known[A.getArgNo()])
      Constants.push_back({&A, C});
    else
      Solver->markOverdefined(&A);
  if (!Constants.empty())
    Solver->markArgInFuncSpecialization(&F, Constants);
  Solver->markBlockExecutable(&F.getEntryBlock());
  do
    Solver->solve();
  while (Solver->resolvedUndefsIn(F));
}

/// The constant that \p V is, if it is one; \p V is used in a block that is
/// reached.
Constant *FoldedBody::findConstant(const Value &V) const {
  if (const auto *C = dyn_cast<Constant>(&V))
    return const_cast<Constant *>(C);
  if (const auto *A = dyn_cast<Argument>(&V))
    return Known[A->getArgNo()];
  const auto *I = dyn_cast<Instruction>(&V);
  // Of what stands in a block that is not reached, the solver knows nothing.
  if (!I || V.getType()->isStructTy() || V.getType()->isVoidTy() ||
      V.getType()->isTokenTy() ||
      !Solver->isBlockExecutable(const_cast<BasicBlock *>(I->getParent())))
    return nullptr;
  return Solver->getConstant(
      Solver->getLatticeValueFor(const_cast<Value *>(&V)));
}

ArgumentTuple FoldedBody::getPassed(const CallBase &Call) const {
  ArgumentTuple Passed;
  for (const Argument &A : F.args()) {
    Constant *C = findConstant(*Call.getArgOperand(A.getArgNo()));
    Passed.push_back(C && isReplaceable(A) && isLastingConstant(*C) ? C
                                                                    : nullptr);
  }
  return Passed;
}

/// Is nothing left to do of \p I, which stands in a block that is reached?
bool FoldedBody::isFolded(const Instruction &I) const {
  if (const auto *Branch = dyn_cast<BranchInst>(&I))
    return Branch->isConditional() && findConstant(*Branch->getCondition());
  if (const auto *Switch = dyn_cast<SwitchInst>(&I))
    return findConstant(*Switch->getCondition());
  if (I.getType()->isVoidTy() || I.mayHaveSideEffects())
    return false;
  return findConstant(I);
}

double FoldedBody::getCost(const Instruction &I) const {
  if (const auto *Call = dyn_cast<CallBase>(&I); Call && Call->isIndirectCall())
    return IndirectCallCost;
  const InstructionCost Cost =
      FAM.getResult<TargetIRAnalysis>(F).getInstructionCost(
          &I, TargetTransformInfo::TCK_SizeAndLatency);
  return Cost.isValid() ? double(*Cost.getValue()) : 1;
}

namespace {
/// Puts what the solver knows into what ScalarEvolution knows.
class KnownValues : public SCEVRewriteVisitor<KnownValues> {
public:
  KnownValues(ScalarEvolution &SE,
              function_ref<Constant *(const Value &)> FindConstant)
      : SCEVRewriteVisitor(SE), FindConstant(FindConstant) {}

  const SCEV *visitUnknown(const SCEVUnknown *Leaf) {
    Constant *C = FindConstant(*Leaf->getValue());
    return C ? SE.getSCEV(C) : Leaf;
  }

private:
  function_ref<Constant *(const Value &)> FindConstant;
};
} // namespace

/// What knowing the number of trips of \p L saves beside what is known in it
/// anyway.
double FoldedBody::weighLoop(const Loop &L) const {
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  const SCEV *Trips = SE.getBackedgeTakenCount(&L);
  if (isa<SCEVCouldNotCompute>(Trips) || isa<SCEVConstant>(Trips))
    return 0;
  auto FindConstant = [this](const Value &V) { return findConstant(V); };
  const auto *Number =
      dyn_cast<SCEVConstant>(KnownValues(SE, FindConstant).visit(Trips));
  if (!Number || Number->getAPInt().uge(MaxUnrolledTrips))
    return 0;
  double Body = 0;
  const auto &LI = FAM.getResult<LoopAnalysis>(F);
  for (const BasicBlock *BB : L.blocks())
    if (LI.getLoopFor(BB) == &L &&
        Solver->isBlockExecutable(const_cast<BasicBlock *>(BB)))
      for (const Instruction &I : BB->instructionsWithoutDebug())
        if (!isFolded(I))
          Body += getCost(I) * Frequencies.getBlockFreq(BB).getFrequency() /
                  Frequencies.getEntryFreq();
  return Body * UnrolledShare;
}

/// Adds what \p BB, which is reached, takes.
void FoldedBody::weigh(const BasicBlock &BB) {
  const double Runs = double(Frequencies.getBlockFreq(&BB).getFrequency()) /
                      Frequencies.getEntryFreq();
  for (const Instruction &I : BB.instructionsWithoutDebug()) {
    const double Cost = getCost(I) * Runs;
    Time += Cost;
    if (isFolded(I)) {
      if (!FoldedAnyway.contains(&I))
        Saved += Cost;
      continue;
    }
    ++Size;
    const auto *Call = dyn_cast<CallBase>(&I);
    if (Call && Call->isIndirectCall() &&
        findConstant(*Call->getCalledOperand()))
      Saved += Cost;
  }
}

void FoldedBody::fold(const ArgumentTuple &Tuple) {
  solve(Tuple);
  SelfCalls.clear();
  Size = 0;
  Time = Saved = 0;
  for (BasicBlock &BB : F) {
    if (!Solver->isBlockExecutable(&BB))
      continue;
    weigh(BB);
    for (Instruction &I : BB)
      if (auto *Call = dyn_cast<CallBase>(&I);
          Call && Call->getCalledFunction() == &F)
        SelfCalls.push_back(Call);
  }
  for (const Loop *L : FAM.getResult<LoopAnalysis>(F).getLoopsInPreorder())
    if (Solver->isBlockExecutable(L->getHeader()))
      Saved += weighLoop(*L);
}
