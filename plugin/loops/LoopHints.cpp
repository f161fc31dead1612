//===- LoopHints.cpp - Help for loops around chained calls ----------------===//

#include "plugin/loops/LoopHints.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/Unrolling.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Transforms/Utils/LoopUtils.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<bool> CutRecurrences(
    "inlinerecursion-cut-recurrences", cl::init(true), cl::Hidden,
    cl::desc("Keep loop strength reduction from values that span several loops "
             "of a flattened recursion"));

/// Is \p L, or was it before inlining, a loop around a link of a chain?
static bool isChainLoop(const Loop &L) {
  return findStringMetadataForLoop(&L, ChainLoopMark).has_value();
}

PreservedAnalyses ChainLoopsPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  for (Function &F : M) {
    if (F.isDeclaration() || !hasCloneMark(F))
      continue;
    auto IsLink = [](const Instruction &I) {
      const auto *Call = dyn_cast<CallInst>(&I);
      const Function *Callee = Call ? Call->getCalledFunction() : nullptr;
      return Callee && hasCloneMark(*Callee);
    };
    const LoopInfo &LI = FAM.getResult<LoopAnalysis>(F);
    for (BasicBlock &BB : F)
      for (Loop *L = any_of(BB, IsLink) ? LI.getLoopFor(&BB) : nullptr;
           L && !isChainLoop(*L); L = L->getParentLoop())
        addStringMetadataToLoop(L, ChainLoopMark.data(), 1);
  }
  return PreservedAnalyses::all();
}

PreservedAnalyses LoopHintsPass::run(Loop &L, LoopAnalysisManager &,
                                     LoopStandardAnalysisResults &AR,
                                     LPMUpdater &) {
  // Inner loops come first, and are gone by now if they were unrolled.
  // Multiplying those that are left does not pay.
  if (!L.isInnermost())
    return PreservedAnalyses::all();

  const unsigned TripCount = getLargestTripCount(L, AR.SE);
  if (TripCount < 2) {
    if (isChainLoop(L) &&
        !findStringMetadataForLoop(&L, "llvm.loop.vectorize.enable"))
      addStringMetadataToLoop(&L, "llvm.loop.vectorize.enable", 0);
    return PreservedAnalyses::all();
  }

  if (hasCloneMark(*L.getHeader()->getParent()) &&
      isWorthUnrolling(L, TripCount) && !hasUnrollTransformation(&L))
    addStringMetadataToLoop(&L, "llvm.loop.unroll.full", 1);
  return PreservedAnalyses::all();
}

/// Freezes \p I at \p InsertBefore and hands all users but the new instruction
/// the frozen value.
static void freezeBefore(Instruction *I, Instruction *InsertBefore) {
  auto *Frozen = new FreezeInst(I, I->getName() + ".cut", InsertBefore);
  I->replaceUsesWithIf(
      Frozen, [Frozen](const Use &U) { return U.getUser() != Frozen; });
}

/// Is \p I compared, or offset?  Each of these would become an induction
/// variable. Where it is only an address, a step through memory is what loop
/// strength reduction is good at.
static bool isComparedOrOffset(const Instruction &I) {
  return any_of(I.users(), [](const User *U) {
    const auto *Operation = dyn_cast<BinaryOperator>(U);
    return isa<ICmpInst>(U) ||
           (Operation && (Operation->getOpcode() == Instruction::Add ||
                          Operation->getOpcode() == Instruction::Sub));
  });
}

/// Cuts what comes into \p L from \p Outer, the loop around it.
static bool cutRecurrences(Loop &L, const Loop &Outer, ScalarEvolution &SE) {
  BasicBlock *Preheader = L.getLoopPreheader();
  if (!Preheader)
    return false;
  auto ComesFromOuter = [&](const Value *V) {
    const auto *I = dyn_cast<Instruction>(V);
    return I && !L.contains(I) && Outer.contains(I);
  };
  auto IsRecurrence = [&](Value *V) {
    const auto *Recurrence = dyn_cast<SCEVAddRecExpr>(SE.getSCEV(V));
    return Recurrence && Recurrence->getLoop() == &L;
  };

  // An index that begins where the outer loop's index stands.
  bool Changed = false;
  for (PHINode &Phi : L.getHeader()->phis()) {
    Value *Start = Phi.getIncomingValueForBlock(Preheader);
    if (!Phi.getType()->isIntegerTy() || !ComesFromOuter(Start) ||
        isa<FreezeInst>(Start) || !IsRecurrence(&Phi))
      continue;
    auto *Frozen = new FreezeInst(Start, Start->getName() + ".cut",
                                  Preheader->getTerminator());
    Phi.setIncomingValueForBlock(Preheader, Frozen);
    Changed = true;
  }

  // A sum of an inner and an outer one.
  SmallVector<Instruction *, 8> Sums;
  for (BasicBlock *BB : L.blocks())
    for (Instruction &I : *BB)
      if ((I.getOpcode() == Instruction::Add ||
           I.getOpcode() == Instruction::Sub) &&
          I.getType()->isIntegerTy() && any_of(I.operands(), ComesFromOuter) &&
          any_of(I.operands(), IsRecurrence) && isComparedOrOffset(I))
        Sums.push_back(&I);
  for (Instruction *Sum : Sums)
    freezeBefore(Sum, Sum->getNextNode());
  return Changed || !Sums.empty();
}

/// Is there a chain loop in \p F?  The latches tell; the loop analysis need not
/// be computed for that.
static bool hasChainLoop(const Function &F) {
  return any_of(F, [](const BasicBlock &BB) {
    return findOptionMDForLoopID(
        BB.getTerminator()->getMetadata(LLVMContext::MD_loop), ChainLoopMark);
  });
}

PreservedAnalyses CutRecurrencesPass::run(Function &F,
                                          FunctionAnalysisManager &FAM) {
  if (!CutRecurrences || !hasChainLoop(F))
    return PreservedAnalyses::all();
  const LoopInfo &LI = FAM.getResult<LoopAnalysis>(F);
  ScalarEvolution *SE = nullptr;
  bool Changed = false;
  for (Loop *L : LI.getLoopsInPreorder()) {
    const Loop *Outer = L->getParentLoop();
    if (!Outer || !isChainLoop(*L) || !isChainLoop(*Outer))
      continue;
    if (!SE)
      SE = &FAM.getResult<ScalarEvolutionAnalysis>(F);
    Changed |= cutRecurrences(*L, *Outer, *SE);
  }
  if (!Changed)
    return PreservedAnalyses::all();
  PreservedAnalyses PA;
  PA.preserveSet<CFGAnalyses>();
  return PA;
}
