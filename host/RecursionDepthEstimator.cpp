//===- RecursionDepthEstimator.cpp - How deep does it recurse? ------------===//

#include "RecursionDepthEstimator.h"
#include "DirectCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/InstructionSimplify.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include <algorithm>
#include <optional>

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Nested instructions between the number of a trip and what it decides.
static constexpr unsigned MaxTripFoldDepth = 4;
/// Branches before an incoming edge of a PHI that are asked whether it is dead.
static constexpr unsigned MaxDecidingSteps = 4;

namespace {

/// A branch or switch on the way to a recursive call, and its ways on.
struct Guard {
  Instruction *Terminator;
  /// The successors from which the call can be reached without coming back to
  /// the guard; at least one other successor is not among them.
  SmallPtrSet<const BasicBlock *, 2> WaysOn;
};

/// Values of one activation, for known (and partly known) arguments.
class Activation {
public:
  Activation(Function &F, ScalarEvolution &SE, ArrayRef<Constant *> Arguments)
      : SE(SE), Query(F.getParent()->getDataLayout()), Arguments(Arguments) {}

  /// The constant that \p V is in this activation, or null.
  Constant *evaluate(Value *V, unsigned Depth = 0);

  /// Does control certainly turn away from the call at \p G?
  bool isTurnedAwayAt(const Guard &G);

private:
  Constant *foldInstruction(Instruction &I, unsigned Depth);
  Constant *foldPhi(PHINode &Phi, unsigned Depth);
  /// The one successor to which \p Terminator is known to go, or null.
  const BasicBlock *getSuccessorTaken(Instruction *Terminator,
                                      unsigned Depth = 0);
  Constant *evaluateThroughLoops(Instruction &I);

  ScalarEvolution &SE;
  const SimplifyQuery Query;
  ArrayRef<Constant *> Arguments;
  /// Null while an instruction is being evaluated, so that a cycle of PHIs is
  /// unknown rather than endless.
  DenseMap<Instruction *, Constant *> Known;
};

} // namespace

/// \p C unless it stands for no value in particular.
static Constant *getIfDefined(Constant *C) {
  return isa<UndefValue>(C) ? nullptr : C;
}

Constant *Activation::evaluate(Value *V, unsigned Depth) {
  if (auto *C = dyn_cast<Constant>(V))
    return getIfDefined(C);
  if (auto *A = dyn_cast<Argument>(V))
    return Arguments[A->getArgNo()];
  auto *I = dyn_cast<Instruction>(V);
  if (!I || Depth == RecursionDepthEstimator::MaxFoldDepth)
    return nullptr;
  auto [Entry, Inserted] = Known.try_emplace(I, nullptr);
  if (!Inserted)
    return Entry->second;

  auto *Phi = dyn_cast<PHINode>(I);
  Constant *Result = Phi ? foldPhi(*Phi, Depth) : foldInstruction(*I, Depth);
  if (!Result)
    Result = evaluateThroughLoops(*I);
  Known[I] = Result;
  return Result;
}

Constant *Activation::foldInstruction(Instruction &I, unsigned Depth) {
  if (I.mayWriteToMemory() || isa<AllocaInst>(I))
    return nullptr;
  // Operands that stay unknown take part as they are: a false conjunct or the
  // chosen arm of a select decides on its own.
  bool AnyKnown = false;
  SmallVector<Value *, 4> Operands;
  for (Value *Operand : I.operands()) {
    Constant *C = evaluate(Operand, Depth + 1);
    AnyKnown |= C != nullptr;
    Operands.push_back(C ? C : Operand);
  }
  if (!AnyKnown)
    return nullptr;
  auto *Folded = dyn_cast_or_null<Constant>(
      simplifyInstructionWithOperands(&I, Operands, Query));
  return Folded ? getIfDefined(Folded) : nullptr;
}

Constant *Activation::evaluateThroughLoops(Instruction &I) {
  // What changes from one trip of a loop to the next has no one value, but a
  // comparison of it may: `i < n` is false in every trip when n is 0.
  auto *Compare = dyn_cast<ICmpInst>(&I);
  if (!(Compare && SE.isSCEVable(Compare->getOperand(0)->getType())) &&
      !(isa<PHINode>(I) && SE.isSCEVable(I.getType())))
    return nullptr;

  // What no known argument takes part in is the same in every activation, and
  // does not end the recursion.
  auto IsKnown = [this](const SCEV *S) {
    const auto *Unknown = dyn_cast<SCEVUnknown>(S);
    const auto *A = Unknown ? dyn_cast<Argument>(Unknown->getValue()) : nullptr;
    return A && Arguments[A->getArgNo()];
  };
  auto IsSmall = [&](const SCEV *S) {
    // Rewriting recurses over the expression.
    return S->getExpressionSize() <= RecursionDepthEstimator::MaxFoldDepth;
  };
  const SCEV *LHS = SE.getSCEV(Compare ? Compare->getOperand(0) : &I);
  const SCEV *RHS = Compare ? SE.getSCEV(Compare->getOperand(1)) : LHS;
  if (!IsSmall(LHS) || !IsSmall(RHS) ||
      (!SCEVExprContains(LHS, IsKnown) && !SCEVExprContains(RHS, IsKnown)))
    return nullptr;

  ValueToSCEVMapTy Substitution;
  for (auto [Formal, Actual] : zip(I.getFunction()->args(), Arguments))
    if (Actual && SE.isSCEVable(Formal.getType()))
      Substitution[&Formal] = SE.getSCEV(Actual);
  LHS = SCEVParameterRewriter::rewrite(LHS, SE, Substitution);
  if (!Compare) {
    const auto *C = dyn_cast<SCEVConstant>(LHS);
    return C ? C->getValue() : nullptr;
  }
  RHS = SCEVParameterRewriter::rewrite(RHS, SE, Substitution);
  std::optional<bool> Outcome =
      SE.evaluatePredicate(Compare->getPredicate(), LHS, RHS);
  return Outcome ? ConstantInt::getBool(I.getType(), *Outcome) : nullptr;
}

Constant *Activation::foldPhi(PHINode &Phi, unsigned Depth) {
  // The edges that control may come by have to agree.  An edge is out of the
  // question if a branch before it, with no other way in between, is known to
  // go elsewhere.
  auto IsDead = [&](const BasicBlock *From) {
    const BasicBlock *To = Phi.getParent();
    for (unsigned Step = 0; From && Step != MaxDecidingSteps; ++Step) {
      const BasicBlock *Taken = getSuccessorTaken(
          const_cast<Instruction *>(From->getTerminator()), Depth + 1);
      if (Taken && Taken != To)
        return true;
      To = From;
      From = From->getSinglePredecessor();
    }
    return false;
  };
  Constant *Agreed = nullptr;
  for (auto [Value, From] : zip(Phi.incoming_values(), Phi.blocks())) {
    if (IsDead(From))
      continue;
    Constant *C = evaluate(Value, Depth + 1);
    if (!C || (Agreed && C != Agreed))
      return nullptr;
    Agreed = C;
  }
  return Agreed;
}

const BasicBlock *Activation::getSuccessorTaken(Instruction *Terminator,
                                                unsigned Depth) {
  if (auto *Branch = dyn_cast<BranchInst>(Terminator)) {
    if (Branch->isUnconditional())
      return Branch->getSuccessor(0);
    if (auto *C = dyn_cast_or_null<ConstantInt>(
            evaluate(Branch->getCondition(), Depth)))
      return Branch->getSuccessor(C->isZero() ? 1 : 0);
  } else if (auto *Switch = dyn_cast<SwitchInst>(Terminator)) {
    if (auto *C = dyn_cast_or_null<ConstantInt>(
            evaluate(Switch->getCondition(), Depth)))
      return Switch->findCaseValue(C)->getCaseSuccessor();
  }
  return nullptr;
}

bool Activation::isTurnedAwayAt(const Guard &G) {
  const BasicBlock *Taken = getSuccessorTaken(G.Terminator);
  return Taken && !G.WaysOn.contains(Taken);
}

/// The guards between the entry of the function and \p Target, innermost first.
///
/// Every way from a dominating block to the target leads through the next
/// dominating block below it, so it is enough to look, for each such pair, at
/// the blocks in between.  Those sets are disjoint: the walk is linear.
static SmallVector<Guard, 4> findGuards(BasicBlock *Target,
                                        const DominatorTree &DT) {
  SmallVector<Guard, 4> Guards;
  BasicBlock *Below = Target;
  for (DomTreeNode *Node = DT.getNode(Target)->getIDom(); Node;
       Node = Node->getIDom()) {
    BasicBlock *Above = Node->getBlock();
    Instruction *Terminator = Above->getTerminator();
    if (isa<BranchInst, SwitchInst>(Terminator) &&
        Terminator->getNumSuccessors() > 1) {
      // Backwards from the lower block up to the upper one, but not around a
      // loop that the lower one heads.
      SmallPtrSet<const BasicBlock *, 8> ReachBelow = {Below};
      SmallVector<const BasicBlock *, 8> Worklist = {Below};
      while (!Worklist.empty())
        for (const BasicBlock *Pred : predecessors(Worklist.pop_back_val()))
          if (Pred != Above && !DT.dominates(Below, Pred) &&
              ReachBelow.insert(Pred).second)
            Worklist.push_back(Pred);

      Guard G{Terminator, {}};
      for (const BasicBlock *Successor : successors(Above))
        if (ReachBelow.contains(Successor))
          G.WaysOn.insert(Successor);
      if (any_of(successors(Above), [&](const BasicBlock *Successor) {
            return !G.WaysOn.contains(Successor);
          }))
        Guards.push_back(std::move(G));
    }
    Below = Above;
  }
  return Guards;
}

RecursionDepthEstimator::RecursionDepthEstimator(Function *F,
                                                 ScalarEvolution *SE,
                                                 DominatorTree *DT)
    : F(F), SE(SE), DT(DT) {}

bool RecursionDepthEstimator::canEstimateRecursionDepth() {
  if (!DT)
    return false;

  // Whatever else enters F does not enter a chain of it.
  for (CallInst *Call : findCallsOf(*F)) {
    if (isSelfCall(*Call))
      continue;
    ArgumentTuple Arguments;
    for (unsigned ArgNo = 0; ArgNo != F->arg_size(); ++ArgNo) {
      auto *C = dyn_cast<Constant>(Call->getArgOperand(ArgNo));
      Arguments.push_back(C ? getIfDefined(C) : nullptr);
    }
    // An entry about which nothing is known may go to any depth.
    if (none_of(Arguments, [](Constant *C) { return C != nullptr; }))
      return false;
    if (is_contained(Entries, Arguments))
      continue;
    if (Entries.size() == MaxEntries)
      return false;
    Entries.push_back(std::move(Arguments));
  }
  if (Entries.empty())
    return false;

  for (Instruction &I : instructions(*F)) {
    auto *Call = dyn_cast<CallInst>(&I);
    // A call that is never reached makes no activations.
    if (!Call || Call->getCalledFunction() != F ||
        !DT->isReachableFromEntry(Call->getParent()))
      continue;
    if (CallSites.size() == MaxCallSites)
      return false;
    CallSites.push_back(Call);
  }
  if (any_of(CallSites,
             [this](CallInst *Call) { return isInLoopBetterUnrolled(Call); })) {
    DeclineReason = "its loop around the recursive call is worth more unrolled";
    return false;
  }
  return !CallSites.empty();
}

/// Is \p V, in \p L, decided by the number \p Trip of the trip alone?
static bool isDecidedByTrip(const Value *V, const Loop &L, const PHINode *Trip,
                            unsigned Depth = 0) {
  if (V == Trip)
    return true;
  const auto *I = dyn_cast<Instruction>(V);
  if (!I || !L.contains(I) || !isa<BinaryOperator, CmpInst, CastInst>(I) ||
      Depth == MaxTripFoldDepth)
    return false;
  return all_of(I->operands(), [&](const Value *Operand) {
    return isa<ConstantInt>(Operand) ||
           isDecidedByTrip(Operand, L, Trip, Depth + 1);
  });
}

/// Does \p I turn into something much cheaper once \p Trip is a constant?
static bool gainsFromUnrolling(const Instruction &I, const Loop &L,
                               const PHINode *Trip) {
  const Value *Decider = nullptr;
  if (const auto *Operation = dyn_cast<BinaryOperator>(&I)) {
    if (Operation->isIntDivRem())
      Decider = Operation->getOperand(1);
  } else if (const auto *Select = dyn_cast<SelectInst>(&I)) {
    Decider = Select->getCondition();
  } else if (const auto *Switch = dyn_cast<SwitchInst>(&I)) {
    Decider = Switch->getCondition();
  } else if (const auto *Branch = dyn_cast<BranchInst>(&I)) {
    if (Branch->isConditional() && !L.isLoopExiting(Branch->getParent()))
      Decider = Branch->getCondition();
  }
  return Decider && isDecidedByTrip(Decider, L, Trip);
}

bool RecursionDepthEstimator::isInLoopBetterUnrolled(CallInst *Call) const {
  for (BasicBlock &BB : *F)
    for (PHINode &Phi : BB.phis()) {
      if (!Phi.getType()->isIntegerTy())
        continue;
      const auto *Recurrence = dyn_cast<SCEVAddRecExpr>(SE->getSCEV(&Phi));
      const Loop *L = Recurrence ? Recurrence->getLoop() : nullptr;
      if (!L || L->getHeader() != &BB || !L->contains(Call) ||
          !isa<SCEVConstant>(Recurrence->getStart()))
        continue;
      const BasicBlock *Latch = L->getLoopLatch();
      const unsigned Trips = SE->getSmallConstantTripCount(L);
      if (!Latch || DT->dominates(Call->getParent(), Latch) || Trips < 2 ||
          Trips > MaxUnrolledTrips)
        continue;
      unsigned Size = 0;
      bool Gains = false;
      for (BasicBlock *Inside : L->blocks()) {
        Size += Inside->size();
        // Too large anyway; and so that many PHIs of a large loop are no issue.
        if (Size * Trips > MaxUnrolledSize)
          break;
        for (Instruction &I : *Inside)
          Gains |= gainsFromUnrolling(I, *L, &Phi);
      }
      if (Gains && Size * Trips <= MaxUnrolledSize)
        return true;
    }
  return false;
}

namespace {
/// A recursive call and what control has to pass to get to it.
struct RecursiveCall {
  CallInst *Call;
  SmallVector<Guard, 4> Guards;
};
} // namespace

/// The most activations of \p F that stand on each other when it is entered
/// with one of \p Tuples and recurses through whichever of \p Calls it gets to;
/// none if nothing is known to stop it.
static std::optional<unsigned>
countActivations(Function &F, ScalarEvolution &SE,
                 ArrayRef<RecursiveCall> Calls,
                 SmallVector<SmallVector<Constant *, 4>, 2> Tuples) {
  for (unsigned Depth = 1; Depth <= RecursionDepthEstimator::MaxActivations;
       ++Depth) {
    SmallVector<SmallVector<Constant *, 4>, 2> Deeper;
    for (const auto &Arguments : Tuples) {
      Activation Now(F, SE, Arguments);
      for (const RecursiveCall &R : Calls) {
        if (any_of(R.Guards,
                   [&Now](const Guard &G) { return Now.isTurnedAwayAt(G); }))
          continue;
        SmallVector<Constant *, 4> Next;
        for (unsigned ArgNo = 0; ArgNo != F.arg_size(); ++ArgNo)
          Next.push_back(Now.evaluate(R.Call->getArgOperand(ArgNo)));
        // The next activation would do the same as this one, for ever.
        if (Next == Arguments)
          return std::nullopt;
        if (is_contained(Deeper, Next))
          continue;
        if (Deeper.size() == RecursionDepthEstimator::MaxTuples)
          return std::nullopt;
        Deeper.push_back(std::move(Next));
      }
    }
    // What turns away is an activation as well.
    if (Deeper.empty())
      return Depth;
    Tuples = std::move(Deeper);
  }
  return std::nullopt;
}

std::pair<const SCEV *, const SCEV *>
RecursionDepthEstimator::identifyRecursionDepthForCallSite(CallInst *Call) {
  const RecursiveCall Alone = {Call, findGuards(Call->getParent(), *DT)};
  unsigned Shallowest = ~0U, Deepest = 0;
  for (const ArgumentTuple &Entry : Entries) {
    std::optional<unsigned> Activations =
        countActivations(*F, *SE, Alone, {Entry});
    if (!Activations)
      return {nullptr, nullptr};
    Shallowest = std::min(Shallowest, *Activations);
    Deepest = std::max(Deepest, *Activations);
  }
  Type *CountTy = Type::getInt32Ty(F->getContext());
  return {SE->getConstant(CountTy, Shallowest),
          SE->getConstant(CountTy, Deepest)};
}

std::optional<unsigned> RecursionDepthEstimator::findDeepestRecursion() {
  SmallVector<RecursiveCall, 2> Calls;
  for (CallInst *Call : CallSites)
    Calls.push_back({Call, findGuards(Call->getParent(), *DT)});
  return countActivations(*F, *SE, Calls, Entries);
}
