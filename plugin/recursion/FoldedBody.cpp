//===- FoldedBody.cpp - A function with known arguments -------------------===//

#include "plugin/recursion/FoldedBody.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/BlockFrequencyInfo.h"
#include "llvm/Analysis/ConstantFolding.h"
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

/// How many times the head of \p L is run, if that is known and few times.
/// ScalarEvolution knows what holds for all arguments, and gives up where some
/// of them let the loop run for ever; here it is followed trip by trip.
std::optional<unsigned> FoldedBody::findTrips(const Loop &L) const {
  const BasicBlock *Exiting = L.getExitingBlock();
  const auto *Branch =
      Exiting ? dyn_cast<BranchInst>(Exiting->getTerminator()) : nullptr;
  const auto *Test = Branch && Branch->isConditional()
                         ? dyn_cast<ICmpInst>(Branch->getCondition())
                         : nullptr;
  // What stands behind the head may not be reached in every trip.
  if (!Test || (Exiting != L.getHeader() && Exiting != L.getLoopLatch()))
    return std::nullopt;
  const bool StaysIf = L.contains(Branch->getSuccessor(0));
  for (unsigned Trip = 0; Trip != MaxUnrolledTrips; ++Trip) {
    Constant *LHS = findAtTrip(*Test->getOperand(0), L, Trip);
    Constant *RHS = findAtTrip(*Test->getOperand(1), L, Trip);
    if (!LHS || !RHS)
      return std::nullopt;
    const auto *Stays =
        dyn_cast_or_null<ConstantInt>(ConstantFoldCompareInstOperands(
            Test->getPredicate(), LHS, RHS, F.getParent()->getDataLayout()));
    if (!Stays)
      return std::nullopt;
    if (Stays->isOne() != StaysIf)
      return Trip + 1;
  }
  return std::nullopt;
}

/// What \p V, which is computed in \p L, is in the trip \p Trip, counted from
/// 0; null if that is not known.
Constant *FoldedBody::findAtTrip(const Value &V, const Loop &L,
                                 unsigned Trip) const {
  if (Constant *C = findConstant(V))
    return C;
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  if (!SE.isSCEVable(V.getType()) || !V.getType()->isIntegerTy())
    return nullptr;
  auto FindConstant = [this](const Value &V) { return findConstant(V); };
  const auto *Steps = dyn_cast<SCEVAddRecExpr>(
      KnownValues(SE, FindConstant).visit(SE.getSCEV(const_cast<Value *>(&V))));
  if (!Steps || Steps->getLoop() != &L || !Steps->isAffine())
    return nullptr;
  const auto *Number = dyn_cast<SCEVConstant>(
      Steps->evaluateAtIteration(SE.getConstant(V.getType(), Trip), SE));
  return Number ? Number->getValue() : nullptr;
}

SmallVector<ArgumentTuple, 4>
FoldedBody::getPassed(const CallBase &Call) const {
  SmallVector<ArgumentTuple, 4> Passed(1);
  for (const Argument &A : F.args()) {
    Constant *C = findConstant(*Call.getArgOperand(A.getArgNo()));
    Passed.front().push_back(
        C && isReplaceable(A) && isLastingConstant(*C) ? C : nullptr);
  }
  const Loop *L = FAM.getResult<LoopAnalysis>(F).getLoopFor(Call.getParent());
  // What comes next of an invoke is not the same block for all trips.
  if (!L || !isa<CallInst>(Call))
    return Passed;
  SmallVector<unsigned, 4> Counted;
  for (const Argument &A : F.args())
    if (!Passed.front()[A.getArgNo()] && isReplaceable(A) &&
        findAtTrip(*Call.getArgOperand(A.getArgNo()), *L, 0))
      Counted.push_back(A.getArgNo());
  std::optional<unsigned> Trips = findTrips(*L);
  if (Counted.empty() || !Trips)
    return Passed;
  // A loop that is left at its head runs its body once less.
  if (L->getExitingBlock() == L->getHeader() &&
      Call.getParent() != L->getHeader())
    --*Trips;
  Passed.resize(*Trips, Passed.front());
  for (unsigned Trip = 0; Trip != *Trips; ++Trip)
    for (unsigned Index : Counted)
      Passed[Trip][Index] = findAtTrip(*Call.getArgOperand(Index), *L, Trip);
  return Passed;
}

/// What knowing the number of trips of \p L saves beside what is known in it
/// anyway.
double FoldedBody::weighLoop(const Loop &L) const {
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  if (isa<SCEVConstant>(SE.getBackedgeTakenCount(&L)) || !findTrips(L))
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
