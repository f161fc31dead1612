//===- CallGuard.cpp - The test that ends a recursion ---------------------===//

#include "plugin/rewrite/CallGuard.h"
#include "plugin/ir/ForwardingCall.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/Transforms/Utils/BasicBlockUtils.h"
#include "llvm/Transforms/Utils/Cloning.h"
#include "llvm/Transforms/Utils/Local.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static bool isCallTo(const Instruction &I, const Function &F) {
  const auto *Call = dyn_cast<CallBase>(&I);
  return Call && Call->getCalledFunction() == &F;
}

/// The blocks of \p F from which one of its self calls can be reached.
static SmallPtrSet<const BasicBlock *, 16>
findRecursiveBlocks(const Function &F) {
  SmallPtrSet<const BasicBlock *, 16> Recursive;
  SmallVector<const BasicBlock *, 16> Worklist;
  for (const BasicBlock &BB : F)
    if (any_of(BB, [&F](const Instruction &I) { return isCallTo(I, F); }))
      Worklist.push_back(&BB);
  while (!Worklist.empty()) {
    const BasicBlock *BB = Worklist.pop_back_val();
    if (Recursive.insert(BB).second)
      append_range(Worklist, predecessors(BB));
  }
  return Recursive;
}

/// Does \p Call, of an intrinsic, give what the optimiser knows where it
/// stands, or which frame it stands in?
static bool dependsOnPlace(const CallBase &Call) {
  switch (Call.getIntrinsicID()) {
  case Intrinsic::is_constant:
  case Intrinsic::objectsize:
  case Intrinsic::frameaddress:
  case Intrinsic::returnaddress:
  case Intrinsic::addressofreturnaddress:
  case Intrinsic::sponentry:
  case Intrinsic::read_register:
    return true;
  default:
    return false;
  }
}

bool llvm::inlinerecursion::isRepeatable(const Instruction &I) {
  if (isa<DbgInfoIntrinsic>(I))
    return true;
  // Frozen poison is any value, the second time another.
  if (isa<FreezeInst>(I) || I.mayHaveSideEffects())
    return false;
  // A variable that nothing is stored to yet, ...
  if (const auto *Alloca = dyn_cast<AllocaInst>(&I))
    return Alloca->isStaticAlloca();
  // ... which has another address the second time.
  if (any_of(I.operands(), [](const Use &U) { return isa<AllocaInst>(U); }))
    return false;
  // Another thread may store in between, unless that is undefined.
  if (const auto *Load = dyn_cast<LoadInst>(&I))
    return Load->isSimple();
  // Calls are not what a guard saves.
  if (const auto *Call = dyn_cast<CallBase>(&I))
    return isa<IntrinsicInst>(Call) && !dependsOnPlace(*Call);
  return true;
}

/// Adds what can be reached from \p From to \p Reached, and returns the size of
/// all of that (instructions).
static unsigned addReachable(ArrayRef<BasicBlock *> From,
                             SetVector<BasicBlock *> &Reached) {
  Reached.insert(From.begin(), From.end());
  unsigned Size = 0;
  for (size_t I = 0; I != Reached.size(); ++I) {
    Size += Reached[I]->sizeWithoutDebug();
    for (BasicBlock *Successor : successors(Reached[I]))
      Reached.insert(Successor);
  }
  return Size;
}

std::optional<EntryGuard>
llvm::inlinerecursion::findEntryGuard(Function &F, unsigned MaxSize,
                                      bool IsRepeated) {
  const auto Recursive = findRecursiveBlocks(F);
  std::optional<EntryGuard> Guard;
  SmallVector<BasicBlock *, 4> Blocks;
  SetVector<BasicBlock *> Exits;
  unsigned Size = 0;
  BasicBlock *BB = &F.getEntryBlock();
  while (!is_contained(Blocks, BB)) {
    Instruction *Terminator = BB->getTerminator();
    if (!isa<BranchInst, SwitchInst>(Terminator) ||
        !all_of(make_range(BB->begin(), Terminator->getIterator()),
                [&](const Instruction &I) {
                  return IsRepeated ? isRepeatable(I) : !isCallTo(I, F);
                }))
      break;
    Blocks.push_back(BB);
    Size += BB->sizeWithoutDebug();

    SmallVector<BasicBlock *, 4> NewExits;
    SmallVector<BasicBlock *, 2> Onward;
    for (BasicBlock *Successor : successors(BB))
      if (!Recursive.contains(Successor))
        NewExits.push_back(Successor);
      else if (!is_contained(Onward, Successor))
        Onward.push_back(Successor);
    if (Onward.empty())
      break;
    if (Size + addReachable(NewExits, Exits) > MaxSize)
      break;
    if (!NewExits.empty())
      Guard = EntryGuard{Blocks,
                         {Onward.begin(), Onward.end()},
                         Size + addReachable({}, Exits)};
    // What chooses between several ways is left to who goes on.
    if (Onward.size() > 1)
      break;
    BB = Onward.front();
  }
  return Guard;
}

/// Calls \p Target where \p Last of \p F leads to one of \p Beyond, with \p
/// HandedOver behind the arguments of \p F, and returns what it does.
static void callInstead(Function &F, BasicBlock &Last,
                        ArrayRef<BasicBlock *> Beyond, Function &Target,
                        ArrayRef<Instruction *> HandedOver = {}) {
  const SmallVector<Value *, 4> More(HandedOver);
  BasicBlock &Onward = createForwardingCall(F, Target, More);
  Instruction *Terminator = Last.getTerminator();
  for (unsigned I = 0; I != Terminator->getNumSuccessors(); ++I) {
    BasicBlock *Successor = Terminator->getSuccessor(I);
    if (!is_contained(Beyond, Successor))
      continue;
    Successor->removePredecessor(&Last, /*KeepOneInputPHIs=*/true);
    Terminator->setSuccessor(I, &Onward);
  }
  removeUnreachableBlocks(F);
}

Function &llvm::inlinerecursion::buildGuard(Function &F,
                                            const EntryGuard &Guard,
                                            Function &Target) {
  ValueToValueMapTy VMap;
  Function *NewF = CloneFunction(&F, VMap);
  NewF->setName(F.getName() + GuardSuffix);
  NewF->setLinkage(GlobalValue::InternalLinkage);
  SmallVector<BasicBlock *, 2> Beyond;
  for (BasicBlock *BB : Guard.Beyond)
    Beyond.push_back(cast<BasicBlock>(VMap[BB]));
  callInstead(*NewF, *cast<BasicBlock>(VMap[Guard.Blocks.back()]), Beyond,
              Target);
  return *NewF;
}

void llvm::inlinerecursion::reduceToGuard(Function &F, const EntryGuard &Guard,
                                          Function &Target,
                                          ArrayRef<Instruction *> HandedOver) {
  callInstead(F, *Guard.Blocks.back(), Guard.Beyond, Target, HandedOver);
}

void llvm::inlinerecursion::removeGuard(Function &Copy, const Function &F,
                                        const EntryGuard &Guard) {
  if (Guard.Beyond.size() > 1)
    return;
  // What one block of the guard alone leads to is run once per activation.
  for (const BasicBlock *BB : drop_begin(Guard.Blocks))
    if (!BB->getUniquePredecessor())
      return;

  // A copy has its blocks in the order of the function's.
  DenseMap<const BasicBlock *, BasicBlock *> CopyOf;
  for (auto [Original, Copied] : zip_equal(F, Copy))
    CopyOf[&Original] = &Copied;

  for (size_t I = 0; I != Guard.Blocks.size(); ++I) {
    const bool IsLast = I + 1 == Guard.Blocks.size();
    BasicBlock *From = CopyOf[Guard.Blocks[I]];
    BasicBlock *To =
        CopyOf[IsLast ? Guard.Beyond.front() : Guard.Blocks[I + 1]];
    Instruction *Terminator = From->getTerminator();
    bool IsFirstEdge = true;
    for (BasicBlock *Successor : successors(From)) {
      if (Successor == To && std::exchange(IsFirstEdge, false))
        continue;
      Successor->removePredecessor(From, /*KeepOneInputPHIs=*/true);
    }
    auto *Jump = BranchInst::Create(To, Terminator);
    Jump->setDebugLoc(Terminator->getDebugLoc());
    Terminator->eraseFromParent();
  }
  removeUnreachableBlocks(Copy);
}
