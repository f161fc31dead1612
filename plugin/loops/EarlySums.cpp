//===- EarlySums.cpp - Fewer values across the calls of a ring ------------===//

#include "plugin/loops/EarlySums.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// The operand of \p Operation that is computed last, if both are computed in
/// the function, and for nothing else; else null.
static Instruction *findLastOperand(const BinaryOperator &Operation,
                                    const DominatorTree &DT) {
  auto *A = dyn_cast<Instruction>(Operation.getOperand(0));
  auto *B = dyn_cast<Instruction>(Operation.getOperand(1));
  if (!A || !B || !A->hasOneUse() || !B->hasOneUse())
    return nullptr;
  return DT.dominates(A, B) ? B : DT.dominates(B, A) ? A : nullptr;
}

/// Where to make \p Operation, whose operands are there from \p Last on; null
/// if it is to stay.
static Instruction *findEarlierPlace(const BinaryOperator &Operation,
                                     Instruction &Last, const LoopInfo &LI,
                                     const PostDominatorTree &PDT) {
  const BasicBlock *Here = Operation.getParent();
  BasicBlock *There = Last.getParent();
  // Within a block, the code generator orders for itself.
  if (Here == There || Last.isTerminator() || Operation.isIntDivRem())
    return nullptr;
  if (LI.getLoopFor(Here) != LI.getLoopFor(There) ||
      !PDT.dominates(Here, There))
    return nullptr;
  return isa<PHINode>(Last) ? &*There->getFirstInsertionPt()
                            : Last.getNextNode();
}

PreservedAnalyses EarlySumsPass::run(Function &F,
                                     FunctionAnalysisManager &FAM) {
  if (!hasCloneMark(F))
    return PreservedAnalyses::all();
  const auto &DT = FAM.getResult<DominatorTreeAnalysis>(F);
  const auto &PDT = FAM.getResult<PostDominatorTreeAnalysis>(F);
  const auto &LI = FAM.getResult<LoopAnalysis>(F);
  bool Changed = false;
  for (Instruction &I : make_early_inc_range(instructions(F))) {
    auto *Operation = dyn_cast<BinaryOperator>(&I);
    Instruction *Last = Operation ? findLastOperand(*Operation, DT) : nullptr;
    if (!Last)
      continue;
    if (Instruction *Place = findEarlierPlace(*Operation, *Last, LI, PDT)) {
      Operation->moveBefore(Place);
      Operation->updateLocationAfterHoist();
      Changed = true;
    }
  }
  if (!Changed)
    return PreservedAnalyses::all();
  PreservedAnalyses PA;
  PA.preserveSet<CFGAnalyses>();
  return PA;
}
