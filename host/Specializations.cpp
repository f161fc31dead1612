//===- Specializations.cpp - Copies for known arguments -------------------===//

#include "Specializations.h"
#include "Names.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallString.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/ModRef.h"
#include "llvm/Support/raw_ostream.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

bool llvm::inlinerecursion::isReplaceable(const Argument &A) {
  // The callee owns a copy of the pointee, not the caller's object.
  if (A.hasPassPointeeByValueCopyAttr() || A.hasInAllocaAttr())
    return false;
  // Held in registers by convention; their uses must be the argument itself.
  return !A.hasSwiftErrorAttr() && !A.hasNestAttr() &&
         !A.hasAttribute(Attribute::SwiftSelf) &&
         !A.hasAttribute(Attribute::SwiftAsync);
}

bool llvm::inlinerecursion::isLastingConstant(const Constant &C) {
  // Undefined values differ from use to use, and so do the addresses of
  // thread-local variables from thread to thread.
  return !isa<UndefValue>(C) && !C.containsUndefOrPoisonElement() &&
         !C.isThreadDependent();
}

ArgumentTuple
llvm::inlinerecursion::getConstantArguments(const CallBase &Call,
                                            const Function &Callee) {
  ArgumentTuple Tuple;
  for (const Argument &A : Callee.args()) {
    auto *C = dyn_cast<Constant>(Call.getArgOperand(A.getArgNo()));
    Tuple.push_back(C && isReplaceable(A) && isLastingConstant(*C) ? C
                                                                   : nullptr);
  }
  return Tuple;
}

bool llvm::inlinerecursion::isSpecializable(const Function &F) {
  for (const BasicBlock &BB : F) {
    // A clone's own blocks would be reached through the addresses of F's.
    if (BB.hasAddressTaken())
      return false;
    for (const Instruction &I : BB)
      if (auto *Call = dyn_cast<CallBase>(&I))
        if (Call->cannotDuplicate())
          return false;
  }
  return true;
}

/// The name of the original function, ".specialized" and the constants that
/// have a short name.
static SmallString<64> getCloneName(const Function &Pattern,
                                    const ArgumentTuple &Tuple) {
  SmallString<64> Name = Pattern.getName();
  const size_t Suffix = Name.str().rfind(CloneSuffix);
  if (Suffix != StringRef::npos)
    Name.truncate(Suffix);
  raw_svector_ostream OS(Name);
  OS << SpecializedSuffix;
  for (const Constant *C : Tuple) {
    OS << ".";
    if (const auto *I = dyn_cast_or_null<ConstantInt>(C))
      I->getValue().print(OS, /*isSigned=*/true);
    else if (const auto *G = dyn_cast_or_null<GlobalValue>(C))
      OS << G->getName();
    else
      OS << (C ? "c" : "_");
  }
  return Name;
}

static bool replacesPointer(const ArgumentTuple &Tuple) {
  return any_of(Tuple,
                [](Constant *C) { return C && C->getType()->isPointerTy(); });
}

/// \p Effects of a function that does not get at its memory by its arguments
/// any more but by the name of a global.
static MemoryEffects withoutArguments(MemoryEffects Effects) {
  return Effects | MemoryEffects(MemoryEffects::Other,
                                 Effects.getModRef(MemoryEffects::ArgMem));
}

Function *Specializations::find(const ArgumentTuple &Tuple) const {
  auto Found = ByTuple.find(Tuple);
  return Found == ByTuple.end() ? nullptr : Found->second;
}

/// \p Call of the pattern in the copy that two steps of cloning have led to.
static CallBase *findClone(const CallBase &Call, const ValueToValueMapTy &First,
                           const ValueToValueMapTy &Second) {
  const auto *Between = dyn_cast_or_null<CallBase>(First.lookup(&Call));
  if (!Between)
    return nullptr;
  auto *Last = dyn_cast_or_null<CallBase>(Second.lookup(Between));
  // Another value may have taken its place.
  return Last && Last->getCalledOperand() == Call.getCalledOperand() ? Last
                                                                     : nullptr;
}

Function &Specializations::make(const ArgumentTuple &Tuple, CallMap *Calls) {
  // The pruning clone is made of a plain copy, for two reasons.  Two functions
  // must not share one DISubprogram, and only CloneFunction makes a new one.
  // And it simplifies while the new function has no terminators yet, which some
  // analyses of an argument run into (programUndefinedIfPoison in
  // ValueTracking.cpp): until the new function is complete, it uses the
  // arguments of the copy.
  ValueToValueMapTy PlainVMap;
  Function *Source = CloneFunction(&Pattern, PlainVMap);

  Function *Clone =
      Function::Create(Pattern.getFunctionType(), GlobalValue::InternalLinkage,
                       Pattern.getAddressSpace(), getCloneName(Pattern, Tuple),
                       Pattern.getParent());
  Clone->copyAttributesFrom(&Pattern);
  // Only the pattern may be seen by others.
  Clone->setVisibility(GlobalValue::DefaultVisibility);
  Clone->setDLLStorageClass(GlobalValue::DefaultStorageClass);
  Clone->setDSOLocal(true);
  Clone->copyMetadata(Source, 0);
  // No link of the ring any more.
  Clone->removeFnAttr(EligibleMark);
  if (replacesPointer(Tuple))
    Clone->setMemoryEffects(withoutArguments(Clone->getMemoryEffects()));

  ValueToValueMapTy VMap;
  for (auto [Formal, New, C] : zip(Source->args(), Clone->args(), Tuple)) {
    New.setName(Formal.getName());
    VMap[&Formal] = C ? static_cast<Value *>(C) : &Formal;
  }
  SmallVector<ReturnInst *, 4> Returns;
  CloneAndPruneFunctionInto(Clone, Source, VMap, /*ModuleLevelChanges=*/false,
                            Returns);
  for (auto [Formal, New] : zip(Source->args(), Clone->args()))
    Formal.replaceAllUsesWith(&New);
  if (Calls)
    for (const Instruction &I : instructions(Pattern))
      if (const auto *Call = dyn_cast<CallBase>(&I))
        (*Calls)[Call] = findClone(*Call, PlainVMap, VMap);
  Source->eraseFromParent();
  ByTuple[Tuple] = Clone;
  Copies.push_back(Clone);
  return *Clone;
}

void Specializations::redirect(CallBase &Call, const ArgumentTuple &Tuple) {
  Redirected.push_back({&Call, Call.getCalledFunction(), Call.getAttributes()});
  Call.setCalledFunction(ByTuple.at(Tuple));
  if (replacesPointer(Tuple) &&
      Call.getAttributes().hasFnAttr(Attribute::Memory))
    Call.setMemoryEffects(
        withoutArguments(Call.getAttributes().getMemoryEffects()));
}

void Specializations::undo() {
  for (const Redirection &R : Redirected) {
    R.Call->setCalledFunction(R.Callee);
    R.Call->setAttributes(R.Attributes);
  }
  // Now nobody calls them but themselves, and each other.
  for (Function *Copy : Copies)
    Copy->dropAllReferences();
  for (Function *Copy : Copies)
    Copy->eraseFromParent();
  Redirected.clear();
  Copies.clear();
  ByTuple.clear();
}
