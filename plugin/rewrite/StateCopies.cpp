//===- StateCopies.cpp - One copy for each state --------------------------===//

#include "plugin/rewrite/StateCopies.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/Size.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/States.h"
#include "llvm/Analysis/ValueTracking.h"
#include "llvm/IR/IRBuilder.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> MaxInlinedSize(
    "inlinerecursion-state-inline-size", cl::init(100), cl::Hidden,
    cl::desc(
        "Largest size, with what is inlined into it, of a copy for a state "
        "that is itself inlined into its callers (instructions)"));

/// Puts a call for the case that \p Call passes \p Value as its argument
/// \p Index in front of it, and returns that.  Where the loop around it is
/// unrolled, nothing is left of the test.
static CallInst &makeCase(CallInst &Call, unsigned Index, ConstantInt &Value) {
  BasicBlock *Head = Call.getParent();
  BasicBlock *Rest = Head->splitBasicBlock(&Call);
  BasicBlock *Behind = Rest->splitBasicBlock(std::next(Call.getIterator()));
  BasicBlock *Case =
      BasicBlock::Create(Call.getContext(), "", Head->getParent(), Rest);
  Head->getTerminator()->eraseFromParent();
  IRBuilder<> Builder(Head);
  Builder.SetCurrentDebugLocation(Call.getDebugLoc());
  Builder.CreateCondBr(Builder.CreateICmpEQ(Call.getArgOperand(Index), &Value),
                       Case, Rest);
  auto *New = cast<CallInst>(Call.clone());
  Builder.SetInsertPoint(Case);
  Builder.Insert(New);
  Builder.CreateBr(Behind);
  if (Call.getType()->isVoidTy())
    return *New;
  Builder.SetInsertPoint(&Behind->front());
  PHINode *Result = Builder.CreatePHI(Call.getType(), 2);
  Call.replaceAllUsesWith(Result);
  Result->addIncoming(&Call, Rest);
  Result->addIncoming(New, Case);
  return *New;
}

/// Erases the variables of \p Copy, made of a function that has some, which
/// nothing is left of: the last activation often needs none.
static void eraseUnusedVariables(Function &Copy) {
  SmallVector<Instruction *, 4> Unused;
  for (Instruction &I : Copy.getEntryBlock())
    if (isa<AllocaInst>(I) && onlyUsedByLifetimeMarkers(&I))
      Unused.push_back(&I);
  for (Instruction *Variable : Unused) {
    for (User *Marker : make_early_inc_range(Variable->users()))
      cast<Instruction>(Marker)->eraseFromParent();
    Variable->eraseFromParent();
  }
}

/// Keeps \p Copy, whose variables take much stack, a function of its own: in
/// the frame of another one they would take it whether it is called or not.
static void keepApart(Function &Copy) {
  Copy.removeFnAttr(Attribute::AlwaysInline);
  Copy.addFnAttr(Attribute::NoInline);
}

void llvm::inlinerecursion::buildStates(
    Function &F, const StateSet &States,
    SmallVectorImpl<Function *> &RecursiveCopies,
    SmallVectorImpl<Function *> &OtherCopies) {
  Specializations Made(F);
  std::vector<Specializations::CallMap> Calls(States.States.size());
  for (auto [S, CallsOfS] : zip(States.States, Calls)) {
    Function &Copy = Made.make(S.Arguments, &CallsOfS);
    Copy.addFnAttr(StateMark);
    // The source asks for the function, once.
    Copy.removeFnAttr(Request);
    Copy.removeFnAttr(CopiesMark);
  }

  auto Target = [&States](unsigned Number) -> const ArgumentTuple & {
    return States.States[Number].Arguments;
  };
  for (auto [S, CallsOfS] : zip(States.States, Calls))
    for (const Successor &Next : S.Next) {
      CallBase *Clone = CallsOfS.lookup(Next.Call);
      if (!Clone)
        continue;
      const ArgumentTuple &Tuple = Target(Next.State);
      if (Next.Selector)
        Clone = &makeCase(cast<CallInst>(*Clone), *Next.Selector,
                          cast<ConstantInt>(*Tuple[*Next.Selector]));
      Made.redirect(*Clone, Tuple);
      // In a function that everything is to be inlined into (flatten): meant
      // for other functions, and with copies it would have no end.
      Clone->removeFnAttr(Attribute::AlwaysInline);
    }
  for (auto [Call, Number] : States.Entries)
    Made.redirect(*Call, Target(Number));

  SmallVector<Function *, 16> Others;
  for (Function *Copy : Made.getCopies()) {
    eraseUnusedVariables(*Copy);
    const bool IsLarge = hasLargeFrame(*Copy);
    const bool IsAskedAbout = !IsLarge && isDirectlyRecursive(*Copy);
    if (IsLarge)
      keepApart(*Copy);
    else if (!IsAskedAbout)
      Others.push_back(Copy);
    (IsAskedAbout ? RecursiveCopies : OtherCopies).push_back(Copy);
  }
  unsigned GrowthLeft = States.getSize();
  planInlining(Others, MaxInlinedSize, GrowthLeft);
}
