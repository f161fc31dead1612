//===- ValueArguments.cpp - What is read through a pointer ----------------===//

#include "plugin/literal/ValueArguments.h"
#include "host/DirectCalls.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DataLayout.h"
#include "llvm/IR/IRBuilder.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/Operator.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Most values that take the place of pointers: there are about as many
/// registers for arguments.
static constexpr unsigned MaxParts = 6;

//===----------------------------------------------------------------------===//
// What is read through an argument
//===----------------------------------------------------------------------===//

/// Adds what \p Load reads at \p Offset.  False if it is no plain value, or
/// overlaps another one.
static bool addPart(ReadArgument &Read, const LoadInst &Load, int64_t Offset) {
  Type *Ty = Load.getType();
  if (!Load.isSimple() || Offset < 0 || !Ty->isSingleValueType() ||
      isa<ScalableVectorType>(Ty))
    return false;
  // A variable of the callee's own begins at an aligned address.
  if (!isAligned(Load.getAlign(), Offset))
    return false;
  const DataLayout &DL = Load.getModule()->getDataLayout();
  const uint64_t Begin = Offset, End = Begin + DL.getTypeStoreSize(Ty);
  for (ReadPart &Part : Read.Parts) {
    if (Part.Offset == Begin && Part.Ty == Ty) {
      Part.Alignment = std::max(Part.Alignment, Load.getAlign());
      return true;
    }
    if (Begin < Part.Offset + DL.getTypeStoreSize(Part.Ty) && Part.Offset < End)
      return false;
  }
  Read.Parts.push_back({Begin, Ty, Load.getAlign()});
  return Read.Parts.size() <= MaxParts;
}

/// Collects what is read through \p Pointer, \p Offset bytes behind the
/// argument of \p Read.  False if anything else happens to it but that it is
/// passed on as it came.
static bool collectReads(ReadArgument &Read, const Value &Pointer,
                         int64_t Offset) {
  for (const Use &U : Pointer.uses()) {
    const User *Where = U.getUser();
    if (const auto *Load = dyn_cast<LoadInst>(Where)) {
      if (!addPart(Read, *Load, Offset))
        return false;
    } else if (const auto *GEP = dyn_cast<GetElementPtrInst>(Where)) {
      APInt Step(64, 0);
      if (GEP->getPointerOperand() != &Pointer ||
          GEP->getType()->isVectorTy() ||
          !GEP->accumulateConstantOffset(GEP->getModule()->getDataLayout(),
                                         Step) ||
          !collectReads(Read, *GEP, Offset + Step.getSExtValue()))
        return false;
    } else {
      const auto *Call = dyn_cast<CallBase>(Where);
      if (!Call || !isSelfCall(*Call) || !isa<Argument>(Pointer) ||
          !Call->isArgOperand(&U) || Call->getArgOperandNo(&U) != Read.Index)
        return false;
    }
  }
  return true;
}

/// May \p A be another argument, or several?
static bool mayBeReplaced(const Argument &A) {
  return A.getType()->isPointerTy() && !A.hasPassPointeeByValueCopyAttr() &&
         !A.hasStructRetAttr() && !A.hasSwiftErrorAttr() &&
         !A.hasAttribute(Attribute::SwiftSelf) &&
         !A.hasAttribute(Attribute::SwiftAsync);
}

static SmallVector<ReadArgument, 2> findReadArguments(const Function &F) {
  SmallVector<ReadArgument, 2> Arguments;
  for (const Argument &A : F.args()) {
    ReadArgument Read{A.getArgNo(), {}};
    if (!mayBeReplaced(A) || !collectReads(Read, A, 0) || Read.Parts.empty())
      continue;
    llvm::sort(Read.Parts, [](const ReadPart &L, const ReadPart &R) {
      return L.Offset < R.Offset;
    });
    Arguments.push_back(std::move(Read));
  }
  return Arguments;
}

//===----------------------------------------------------------------------===//
// What calls pass
//===----------------------------------------------------------------------===//

/// May a call with other arguments take the place of \p Call?
static bool mayBeReplaced(const CallBase &Call) {
  return !Call.isMustTailCall() && !Call.hasOperandBundles();
}

namespace {
/// Asks of the calls of one function what they pass for its arguments.
class PassedMemory {
public:
  PassedMemory(const Function &F, ArrayRef<ReadArgument> Arguments)
      : F(F), Arguments(Arguments) {}

  /// May \p Call, of F, pass values for all of the arguments?
  bool mayPassValues(const CallBase &Call) const {
    return mayBeReplaced(Call) &&
           all_of(Arguments, [&](const ReadArgument &Read) {
             return mayPassValues(Call, Read);
           });
  }
  /// May it for this one?
  bool mayPassValues(const CallBase &Call, const ReadArgument &Read) const;

private:
  bool isRead(const CallBase &Call, const Use &U) const;
  bool isOnlyHere(const Value &Pointer) const;

  const Function &F;
  ArrayRef<ReadArgument> Arguments;
};
} // namespace

/// Does \p Call do no more with \p U, a pointer, than read?
bool PassedMemory::isRead(const CallBase &Call, const Use &U) const {
  return Call.getCalledFunction() == &F && Call.isArgOperand(&U) &&
         any_of(Arguments, [&](const ReadArgument &Read) {
           return Read.Index == Call.getArgOperandNo(&U);
         });
}

/// Is \p Pointer, to a variable, used for nothing but to access the variable
/// right here, and in calls that only read it?
bool PassedMemory::isOnlyHere(const Value &Pointer) const {
  return all_of(Pointer.uses(), [&](const Use &U) {
    const User *Where = U.getUser();
    if (const auto *Load = dyn_cast<LoadInst>(Where))
      return Load->isSimple();
    if (const auto *Store = dyn_cast<StoreInst>(Where))
      return Store->isSimple() && Store->getValueOperand() != &Pointer;
    if (const auto *GEP = dyn_cast<GetElementPtrInst>(Where))
      return isOnlyHere(*GEP);
    if (const auto *Memory = dyn_cast<MemIntrinsic>(Where))
      return !Memory->isVolatile();
    if (const auto *I = dyn_cast<Instruction>(Where);
        I && I->isLifetimeStartOrEnd())
      return true;
    const auto *Call = dyn_cast<CallBase>(Where);
    return Call && isRead(*Call, U);
  });
}

bool PassedMemory::mayPassValues(const CallBase &Call,
                                 const ReadArgument &Read) const {
  const Value *Passed = Call.getArgOperand(Read.Index);
  // Handed through: in the local function, a value that was passed as one.
  if (Passed == F.getArg(Read.Index))
    return true;
  const DataLayout &DL = F.getParent()->getDataLayout();
  APInt Offset(DL.getIndexTypeSizeInBits(Passed->getType()), 0);
  const Value *Base = Passed->stripAndAccumulateConstantOffsets(
      DL, Offset, /*AllowNonInbounds=*/false);
  uint64_t Size = 0;
  if (const auto *Variable = dyn_cast<AllocaInst>(Base)) {
    // What is in registers is not what a longjmp comes back to.
    if (Variable->getFunction()->callsFunctionThatReturnsTwice())
      return false;
    const auto Bits = Variable->getAllocationSizeInBits(DL);
    if (!Bits || Bits->isScalable() || !isOnlyHere(*Variable))
      return false;
    Size = Bits->getFixedValue() / 8;
  } else if (const auto *Global = dyn_cast<GlobalVariable>(Base)) {
    if (!Global->isConstant() || !Global->hasDefinitiveInitializer() ||
        Global->isThreadLocal())
      return false;
    Size = DL.getTypeAllocSize(Global->getValueType());
  } else {
    return false;
  }
  if (Offset.isNegative())
    return false;
  const ReadPart &Last = Read.Parts.back();
  return Offset.getZExtValue() + Last.Offset + DL.getTypeStoreSize(Last.Ty) <=
         Size;
}

/// The direct calls of \p F, each once, in the order of its use list.
static SetVector<CallBase *> findEachCallOf(const Function &F) {
  SetVector<CallBase *> Calls;
  for (CallBase *Call : findCallsOf<CallBase>(F))
    if (!isa<CallBrInst>(Call))
      Calls.insert(Call);
  return Calls;
}

/// May what \p F gets for \p Read be read at a self call that hands it through?
/// Whoever calls F may have passed memory that does not exist, or that F
/// changes some other way before it reads it.
static bool mayBeReadEarly(const Function &F, const ReadArgument &Read) {
  const Argument &A = *F.getArg(Read.Index);
  const ReadPart &Last = Read.Parts.back();
  return (A.hasNoAliasAttr() || F.onlyReadsMemory()) &&
         A.getDereferenceableBytes() >=
             Last.Offset +
                 F.getParent()->getDataLayout().getTypeStoreSize(Last.Ty);
}

/// Does \p Call, a self call of \p F as it is, have to stay one because of
/// \p Read?
static bool needsPointer(const CallBase &Call, const Function &F,
                         const ReadArgument &Read) {
  return isSelfCall(Call) &&
         Call.getArgOperand(Read.Index) == F.getArg(Read.Index) &&
         !mayBeReadEarly(F, Read);
}

/// Takes out of \p Arguments those for which \p Fits does not hold at each self
/// call among \p Calls.  What is no value any more may take others with it.
template <typename PredicateT>
static void keepWhereSelfCalls(SmallVectorImpl<ReadArgument> &Arguments,
                               const SetVector<CallBase *> &Calls,
                               PredicateT Fits) {
  size_t Before;
  do {
    Before = Arguments.size();
    SmallVector<ReadArgument, 2> Kept;
    copy_if(Arguments, std::back_inserter(Kept), [&](const ReadArgument &Read) {
      return all_of(Calls, [&](const CallBase *Call) {
        return !isSelfCall(*Call) || Fits(*Call, Read);
      });
    });
    Arguments = std::move(Kept);
  } while (Arguments.size() != Before);
}

/// The calls among \p Calls that pass values from now on.
static SmallVector<CallBase *, 8>
findCallsWithValues(const Function &F, ArrayRef<ReadArgument> Arguments,
                    const SetVector<CallBase *> &Calls) {
  const PassedMemory Memory(F, Arguments);
  SmallVector<CallBase *, 8> Passing;
  copy_if(Calls, std::back_inserter(Passing),
          [&](const CallBase *Call) { return Memory.mayPassValues(*Call); });
  // Nobody is left who enters the function itself.
  if (F.hasLocalLinkage() && F.getNumUses() == Passing.size())
    return Passing;
  erase_if(Passing, [&](const CallBase *Call) {
    return any_of(Arguments, [&](const ReadArgument &Read) {
      return needsPointer(*Call, F, Read);
    });
  });
  return Passing;
}

std::optional<ValuePassing>
llvm::inlinerecursion::findValuePassing(Function &F) {
  if (F.isVarArg())
    return std::nullopt;
  ValuePassing How;
  How.Arguments = findReadArguments(F);
  const SetVector<CallBase *> Calls = findEachCallOf(F);

  // Every self call has to pass values, or else the local function would have
  // to call the other one.
  const auto PassesValues = [&](const CallBase &Call,
                                const ReadArgument &Read) {
    return mayBeReplaced(Call) &&
           PassedMemory(F, How.Arguments).mayPassValues(Call, Read);
  };
  keepWhereSelfCalls(How.Arguments, Calls, PassesValues);
  How.Calls = findCallsWithValues(F, How.Arguments, Calls);
  // Where nobody can enter the local function, what the function hands through
  // may be what keeps its own calls from doing so.
  if (How.Calls.empty()) {
    keepWhereSelfCalls(How.Arguments, Calls,
                       [&](const CallBase &Call, const ReadArgument &Read) {
                         return !needsPointer(Call, F, Read) &&
                                PassesValues(Call, Read);
                       });
    How.Calls = findCallsWithValues(F, How.Arguments, Calls);
  }

  unsigned Parts = 0;
  for (const ReadArgument &Read : How.Arguments)
    Parts += Read.Parts.size();
  if (Parts == 0 || Parts > MaxParts || How.Calls.empty())
    return std::nullopt;
  return How;
}

//===----------------------------------------------------------------------===//
// The function that takes values
//===----------------------------------------------------------------------===//

/// What \p F gets in the place of its argument \p Index; null if it stays.
static const ReadArgument *findRead(const ValuePassing &How, unsigned Index) {
  auto *Found = find_if(How.Arguments, [Index](const ReadArgument &Read) {
    return Read.Index == Index;
  });
  return Found == How.Arguments.end() ? nullptr : Found;
}

/// The attributes \p Old of \p F, or of a call of it, with what is left of the
/// arguments.
static AttributeList adaptAttributes(const Function &F, const ValuePassing &How,
                                     AttributeList Old) {
  SmallVector<AttributeSet, 8> Arguments;
  for (unsigned I = 0; I != F.arg_size(); ++I)
    if (const ReadArgument *Read = findRead(How, I))
      Arguments.append(Read->Parts.size(), AttributeSet());
    else
      Arguments.push_back(Old.getParamAttrs(I));
  return AttributeList::get(F.getContext(), Old.getFnAttrs(), Old.getRetAttrs(),
                            Arguments);
}

/// The function that takes values, without a body.
static Function &declareLocal(const Function &F, const ValuePassing &How) {
  SmallVector<Type *, 8> Types;
  for (const Argument &A : F.args())
    if (const ReadArgument *Read = findRead(How, A.getArgNo()))
      for (const ReadPart &Part : Read->Parts)
        Types.push_back(Part.Ty);
    else
      Types.push_back(A.getType());
  auto *Local = Function::Create(
      FunctionType::get(F.getReturnType(), Types, /*isVarArg=*/false),
      GlobalValue::InternalLinkage, F.getAddressSpace(),
      F.getName() + ValueSuffix);
  const_cast<Module *>(F.getParent())
      ->getFunctionList()
      .insertAfter(const_cast<Function &>(F).getIterator(), Local);
  return *Local;
}

/// Memory for the parts of \p Read, to be filled with the values from
/// \p First on.  The caller puts it into a block.
static AllocaInst *makeVariable(const ReadArgument &Read, const Argument &A) {
  const DataLayout &DL = A.getParent()->getParent()->getDataLayout();
  const ReadPart &Last = Read.Parts.back();
  Align Alignment;
  for (const ReadPart &Part : Read.Parts)
    Alignment = std::max(Alignment, Part.Alignment);
  Type *Bytes = ArrayType::get(Type::getInt8Ty(A.getContext()),
                               Last.Offset + DL.getTypeStoreSize(Last.Ty));
  return new AllocaInst(Bytes, DL.getAllocaAddrSpace(), /*ArraySize=*/nullptr,
                        Alignment, A.getName());
}

/// Clones the body of \p F into \p Local.  The pointers of the body are those
/// of variables, which the values are stored to: SROA makes values of them.
static void fillLocal(Function &F, const ValuePassing &How, Function &Local) {
  ValueToValueMapTy VMap;
  SmallVector<Instruction *, 8> Prologue;
  auto *Next = Local.arg_begin();
  for (const Argument &A : F.args()) {
    const ReadArgument *Read = findRead(How, A.getArgNo());
    if (!Read) {
      Next->setName(A.getName());
      VMap[&A] = &*Next++;
      continue;
    }
    AllocaInst *Variable = makeVariable(*Read, A);
    Prologue.push_back(Variable);
    VMap[&A] = Variable;
    for (const ReadPart &Part : Read->Parts) {
      Next->setName(A.getName());
      Value *Place = Variable;
      if (Part.Offset != 0) {
        auto *GEP = GetElementPtrInst::CreateInBounds(
            Type::getInt8Ty(F.getContext()), Variable,
            {ConstantInt::get(Type::getInt64Ty(F.getContext()), Part.Offset)});
        Prologue.push_back(GEP);
        Place = GEP;
      }
      Prologue.push_back(
          new StoreInst(&*Next++, Place, /*isVolatile=*/false, Part.Alignment));
    }
  }
  SmallVector<ReturnInst *, 4> Returns;
  CloneFunctionInto(&Local, &F, VMap, CloneFunctionChangeType::LocalChangesOnly,
                    Returns);
  Instruction *Begin = &*Local.getEntryBlock().begin();
  for (Instruction *I : Prologue)
    I->insertBefore(Begin);
  // What cloning has copied is for the arguments of the other function.
  Local.setAttributes(adaptAttributes(F, How, F.getAttributes()));
  Local.setCallingConv(F.getCallingConv());
  Local.setLinkage(GlobalValue::InternalLinkage);
  Local.setVisibility(GlobalValue::DefaultVisibility);
  Local.setDLLStorageClass(GlobalValue::DefaultStorageClass);
  Local.setDSOLocal(true);
  Local.setComdat(nullptr);
  Local.setUnnamedAddr(GlobalValue::UnnamedAddr::Global);
}

/// Puts a call of \p Local with values in the place of \p Call, of \p F.
static void passValuesAt(CallBase &Call, const Function &F,
                         const ValuePassing &How, Function &Local) {
  IRBuilder<> Builder(&Call);
  SmallVector<Value *, 8> Passed;
  for (unsigned I = 0; I != F.arg_size(); ++I) {
    Value *Operand = Call.getArgOperand(I);
    const ReadArgument *Read = findRead(How, I);
    if (!Read) {
      Passed.push_back(Operand);
      continue;
    }
    const DataLayout &DL = F.getParent()->getDataLayout();
    for (const ReadPart &Part : Read->Parts) {
      Value *Place = Operand;
      if (Part.Offset != 0)
        Place = Builder.CreateConstInBoundsGEP1_64(Builder.getInt8Ty(), Operand,
                                                   Part.Offset);
      // Only the callee promised an alignment, and only where it reads.
      Passed.push_back(Builder.CreateAlignedLoad(
          Part.Ty, Place, Place->getPointerAlignment(DL)));
    }
  }
  CallBase *New;
  if (auto *Invoke = dyn_cast<InvokeInst>(&Call))
    New = Builder.CreateInvoke(&Local, Invoke->getNormalDest(),
                               Invoke->getUnwindDest(), Passed);
  else
    New = Builder.CreateCall(&Local, Passed);
  if (auto *Plain = dyn_cast<CallInst>(&Call))
    // A variable that was passed forbade what is allowed now.
    cast<CallInst>(New)->setTailCallKind(Plain->getTailCallKind());
  New->setCallingConv(Call.getCallingConv());
  New->setAttributes(adaptAttributes(F, How, Call.getAttributes()));
  New->copyMetadata(Call);
  New->takeName(&Call);
  Call.replaceAllUsesWith(New);
  Call.eraseFromParent();
}

PassedValues llvm::inlinerecursion::passValues(Function &F,
                                               const ValuePassing &How) {
  Function &Local = declareLocal(F, How);
  fillLocal(F, How, Local);
  PassedValues Result{&Local, {}};
  // All calls in the new body are copies of self calls.
  const auto OldCalls = findCallsOf<CallBase>(F);
  SetVector<CallBase *> Calls(How.Calls.begin(), How.Calls.end());
  for (CallBase *Call : OldCalls)
    if (Call->getFunction() == &Local)
      Calls.insert(Call);
  for (CallBase *Call : Calls) {
    Result.Callers.insert(Call->getFunction());
    passValuesAt(*Call, F, How, Local);
  }
  if (F.hasLocalLinkage() && all_of(F.users(), [&F](const User *U) {
        const auto *I = dyn_cast<Instruction>(U);
        return I && I->getFunction() == &F;
      })) {
    Result.Callers.erase(&F);
    Local.takeName(&F);
    F.dropAllReferences();
    F.eraseFromParent();
  }
  return Result;
}
