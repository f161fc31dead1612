//===- SavedBody.cpp - A body put aside while another is tried ------------===//

#include "plugin/rewrite/SavedBody.h"
#include "plugin/ir/Names.h"
#include "plugin/rewrite/Copies.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Module.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Makes the blocks of \p From those of \p To, which has its type and none, and
/// the calls of the one calls of the other.
static void moveBody(Function &From, Function &To) {
  To.splice(To.begin(), &From);
  for (auto [Old, New] : zip(From.args(), To.args()))
    Old.replaceAllUsesWith(&New);
  redirectCallsIn(To, From, To);
}

SavedBody::SavedBody(Function &F)
    : F(F),
      Saved(Function::Create(F.getFunctionType(), GlobalValue::InternalLinkage,
                             F.getAddressSpace(), F.getName() + SavedSuffix,
                             F.getParent())) {
  moveBody(F, *Saved);
  ValueToValueMapTy Copied;
  for (auto [Old, New] : zip(Saved->args(), F.args()))
    Copied[&Old] = &New;
  Copied[Saved] = &F;
  for (BasicBlock &BB : *Saved)
    Copied[&BB] = CloneBasicBlock(&BB, Copied, "", &F);
  for (Instruction &I : instructions(F))
    RemapInstruction(&I, Copied,
                     RF_NoModuleLevelChanges | RF_IgnoreMissingLocals);
}

/// Leaves nothing of what \p F consists of.
static void eraseBody(Function &F) {
  for (BasicBlock &BB : F)
    BB.dropAllReferences();
  while (!F.empty())
    F.begin()->eraseFromParent();
}

void llvm::inlinerecursion::eraseFunction(Function &F) {
  eraseBody(F);
  F.eraseFromParent();
}

SavedBody::~SavedBody() {
  if (Saved)
    eraseFunction(*Saved);
}

void SavedBody::restore() {
  eraseBody(F);
  moveBody(*Saved, F);
  Saved->eraseFromParent();
  Saved = nullptr;
}
