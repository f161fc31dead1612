//===- Mutations.cpp - Random changes that make IR recursive --------------===//

#include "Mutations.h"
#include "llvm/FuzzMutate/OpDescriptor.h"
#include "llvm/FuzzMutate/Operations.h"
#include "llvm/FuzzMutate/RandomIRBuilder.h"
#include "llvm/IR/IRBuilder.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/Verifier.h"

using namespace llvm;

static size_t choose(RandomIRBuilder &IB, size_t Choices) {
  return std::uniform_int_distribution<size_t>(0, Choices - 1)(IB.Rand);
}

namespace {

/// A strategy of ours, about as likely as one of LLVM's with many variants.
template <unsigned Weight> class RecursionStrategy : public IRMutationStrategy {
public:
  uint64_t getWeight(size_t, size_t, uint64_t) override { return Weight; }
  using IRMutationStrategy::mutate;
};

/// Instructions of \p BB between which something can be put.
SmallVector<Instruction *, 32> insertionPoints(BasicBlock &BB) {
  SmallVector<Instruction *, 32> Points;
  if (BB.isEHPad() || BB.getFirstInsertionPt() == BB.end())
    return Points;
  for (auto I = BB.getFirstInsertionPt(), E = BB.end(); I != E; ++I) {
    // Only what is behind it: it must stay in the entry block, and LLVM's
    // inliner splits that at a call.
    if (auto *II = dyn_cast<IntrinsicInst>(&*I))
      if (II->getIntrinsicID() == Intrinsic::localescape) {
        Points.clear();
        continue;
      }
    Points.push_back(&*I);
    // Nothing may come between such a call and the return.
    if (auto *CI = dyn_cast<CallInst>(&*I))
      if (CI->isMustTailCall())
        break;
  }
  return Points;
}

/// A call of \p Callee in front of a random instruction of \p BB.
void insertCall(Function &Callee, BasicBlock &BB, RandomIRBuilder &IB,
                bool Constants) {
  if (Callee.isIntrinsic())
    return;
  auto Points = insertionPoints(BB);
  if (Points.empty())
    return;
  size_t Index = choose(IB, Points.size());
  ArrayRef<Instruction *> Before = ArrayRef(Points).take_front(Index);
  SmallVector<Value *, 8> Arguments;
  for (Argument &A : Callee.args()) {
    Type *Ty = A.getType();
    if (!Ty->isFirstClassType() || Ty->isTokenTy() || Ty->isLabelTy() ||
        Ty->isMetadataTy())
      return;
    if (Constants && Ty->isIntegerTy()) {
      Arguments.push_back(ConstantInt::get(Ty, choose(IB, 12)));
    } else if (!Constants && BB.getParent() == &Callee && choose(IB, 2)) {
      // One step from the function's own argument.
      Argument *Own = Callee.getArg(A.getArgNo());
      Value *Stepped = Own;
      IRBuilder<> Builder(Points[Index]);
      if (Ty->isIntegerTy() && choose(IB, 3))
        Stepped = choose(IB, 2)
                      ? Builder.CreateSub(Own, ConstantInt::get(Ty, 1))
                      : Builder.CreateAdd(Own, ConstantInt::get(Ty, 1));
      Arguments.push_back(Stepped);
    } else {
      SmallVector<Value *, 8> Same;
      for (Instruction *I : Before)
        if (I->getType() == Ty)
          Same.push_back(I);
      for (Argument &Other : BB.getParent()->args())
        if (Other.getType() == Ty)
          Same.push_back(&Other);
      Arguments.push_back(Same.empty() || choose(IB, 4) == 0
                              ? Constant::getNullValue(Ty)
                              : Same[choose(IB, Same.size())]);
    }
  }
  CallInst *Call =
      CallInst::Create(&Callee, Arguments, "", /*InsertBefore=*/Points[Index]);
  Call->setCallingConv(Callee.getCallingConv());
  for (Argument &A : Callee.args())
    for (auto Kind : {Attribute::ByVal, Attribute::StructRet})
      if (A.hasAttribute(Kind))
        Call->addParamAttr(A.getArgNo(), A.getAttribute(Kind));
  if (BB.getParent()->getSubprogram() && Callee.getSubprogram())
    Call->setDebugLoc(DebugLoc(DILocation::get(
        BB.getContext(), 1, 1, BB.getParent()->getSubprogram())));
  if (Call->getType()->isFirstClassType() && !Call->getType()->isTokenTy())
    IB.connectToSink(BB, ArrayRef(Points).drop_front(Index), Call);
}

/// Makes a function call itself (again).
class SelfCallStrategy : public RecursionStrategy<20> {
public:
  using IRMutationStrategy::mutate;
  void mutate(BasicBlock &BB, RandomIRBuilder &IB) override {
    insertCall(*BB.getParent(), BB, IB, /*Constants=*/choose(IB, 8) == 0);
  }
};

/// Calls a random function of the module, mostly with constants.
class OutsideCallStrategy : public RecursionStrategy<10> {
public:
  using IRMutationStrategy::mutate;
  void mutate(BasicBlock &BB, RandomIRBuilder &IB) override {
    Module &M = *BB.getModule();
    auto Callee = std::next(M.begin(), choose(IB, M.size()));
    insertCall(*Callee, BB, IB, /*Constants=*/choose(IB, 4) != 0);
  }
};

/// Lets a call go to its own function instead, if the types are the same.
class RedirectStrategy : public RecursionStrategy<10> {
public:
  using IRMutationStrategy::mutate;
  void mutate(Function &F, RandomIRBuilder &IB) override {
    SmallVector<CallBase *, 16> Calls;
    for (Instruction &I : instructions(F))
      if (auto *Call = dyn_cast<CallBase>(&I))
        if (Call->getFunctionType() == F.getFunctionType() &&
            Call->getCallingConv() == F.getCallingConv() &&
            !Call->isMustTailCall())
          Calls.push_back(Call);
    if (!Calls.empty())
      Calls[choose(IB, Calls.size())]->setCalledFunction(&F);
  }
};

/// Returns early from the entry block where an argument is a small constant.
class GuardStrategy : public RecursionStrategy<10> {
public:
  using IRMutationStrategy::mutate;
  void mutate(Function &F, RandomIRBuilder &IB) override {
    SmallVector<Argument *, 8> Numbers;
    for (Argument &A : F.args())
      if (A.getType()->isIntegerTy())
        Numbers.push_back(&A);
    Type *Result = F.getReturnType();
    if (Numbers.empty() || !(Result->isVoidTy() || Result->isSingleValueType()))
      return;
    Argument *A = Numbers[choose(IB, Numbers.size())];
    BasicBlock &Entry = F.getEntryBlock();
    BasicBlock *First = BasicBlock::Create(F.getContext(), "guard", &F, &Entry);
    BasicBlock *Base = BasicBlock::Create(F.getContext(), "base", &F, &Entry);
    IRBuilder<> Builder(First);
    Value *Tested = A;
    if (choose(IB, 3) == 0) // what makes a function fit for a ring
      Tested = Builder.CreateSRem(
          A, ConstantInt::get(A->getType(), 2 + choose(IB, 14)));
    Value *Stop =
        Builder.CreateICmp(choose(IB, 2) ? CmpInst::ICMP_EQ : CmpInst::ICMP_SLE,
                           A, ConstantInt::get(A->getType(), choose(IB, 4)));
    if (Tested != A)
      Stop = Builder.CreateAnd(
          Stop, Builder.CreateICmpSLE(Tested,
                                      ConstantInt::get(Tested->getType(), 1)));
    Builder.CreateCondBr(Stop, Base, &Entry);
    Builder.SetInsertPoint(Base);
    if (Result->isVoidTy())
      Builder.CreateRetVoid();
    else
      Builder.CreateRet(Constant::getNullValue(Result));
    // Static allocations stay in the entry block, as front ends have them.
    for (Instruction &I : make_early_inc_range(Entry))
      if (isa<AllocaInst>(I) && isa<Constant>(I.getOperand(0)))
        I.moveBefore(First->getTerminator());
  }
};

/// Changes what says whether, and how, a function may be copied.
class AttributeStrategy : public RecursionStrategy<10> {
public:
  using IRMutationStrategy::mutate;
  void mutate(Function &F, RandomIRBuilder &IB) override {
    // Not StrictFP: where LLVM clones a comparison that is always true or
    // false into such a function, it crashes, also in its own inliner.
    static const Attribute::AttrKind Kinds[] = {
        Attribute::AlwaysInline, Attribute::NoInline,
        Attribute::OptimizeNone, Attribute::NoDuplicate,
        Attribute::Convergent,   Attribute::Cold,
        Attribute::MinSize,      Attribute::NoUnwind,
        Attribute::NoReturn,     Attribute::ReturnsTwice,
        Attribute::NoRecurse,    Attribute::OptimizeForSize,
        Attribute::WillReturn,   Attribute::MustProgress};
    switch (choose(IB, 6)) {
    case 0:
      F.addFnAttr("specialize-inline-recursion-function");
      break;
    case 1:
      if (!F.hasComdat() && F.hasExternalLinkage())
        F.setLinkage(choose(IB, 2) ? GlobalValue::InternalLinkage
                                   : GlobalValue::WeakAnyLinkage);
      break;
    case 2:
      if (!F.hasComdat() && F.hasInternalLinkage())
        F.setLinkage(GlobalValue::ExternalLinkage);
      break;
    default: {
      auto Kind = Kinds[choose(IB, std::size(Kinds))];
      if (F.hasFnAttribute(Kind))
        F.removeFnAttr(Kind);
      else
        F.addFnAttr(Kind);
    }
    }
  }
};

/// Marks calls as those of a tail, with or without an obligation, or not.
class CallKindStrategy : public RecursionStrategy<5> {
public:
  using IRMutationStrategy::mutate;
  void mutate(Function &F, RandomIRBuilder &IB) override {
    SmallVector<CallInst *, 16> Calls;
    for (Instruction &I : instructions(F))
      if (auto *Call = dyn_cast<CallInst>(&I))
        if (!isa<IntrinsicInst>(Call))
          Calls.push_back(Call);
    if (Calls.empty())
      return;
    CallInst *Call = Calls[choose(IB, Calls.size())];
    static const CallInst::TailCallKind Kinds[] = {
        CallInst::TCK_None, CallInst::TCK_Tail, CallInst::TCK_NoTail,
        CallInst::TCK_MustTail};
    Call->setTailCallKind(Kinds[choose(IB, 4)]);
    if (choose(IB, 3) == 0)
      Call->setIsNoInline();
  }
};

} // namespace

std::unique_ptr<IRMutator> inlinerecursion::makeMutator() {
  std::vector<TypeGetter> Types{
      Type::getInt1Ty,  Type::getInt8Ty,  Type::getInt16Ty, Type::getInt32Ty,
      Type::getInt64Ty, Type::getFloatTy, Type::getDoubleTy};
  // Not ShuffleBlockStrategy, which crashes on blocks that begin with a pad.
  std::vector<std::unique_ptr<IRMutationStrategy>> Strategies;
  Strategies.push_back(std::make_unique<InjectorIRStrategy>(
      InjectorIRStrategy::getDefaultOps()));
  Strategies.push_back(std::make_unique<InstDeleterIRStrategy>());
  Strategies.push_back(std::make_unique<InstModificationIRStrategy>());
  Strategies.push_back(std::make_unique<InsertCFGStrategy>());
  Strategies.push_back(std::make_unique<InsertPHIStrategy>());
  Strategies.push_back(std::make_unique<SinkInstructionStrategy>());
  Strategies.push_back(std::make_unique<SelfCallStrategy>());
  Strategies.push_back(std::make_unique<OutsideCallStrategy>());
  Strategies.push_back(std::make_unique<RedirectStrategy>());
  Strategies.push_back(std::make_unique<GuardStrategy>());
  Strategies.push_back(std::make_unique<AttributeStrategy>());
  Strategies.push_back(std::make_unique<CallKindStrategy>());
  return std::make_unique<IRMutator>(std::move(Types), std::move(Strategies));
}

bool inlinerecursion::mutateOnce(IRMutator &Mutator, Module &M, unsigned Seed,
                                 size_t Size, size_t MaxSize) {
  // Without a body there is nothing that LLVM's mutations could change.
  if (all_of(M, [](Function &F) { return F.isDeclaration(); }))
    return true;
  Mutator.mutateModule(M, Seed, Size, MaxSize);
  return !verifyModule(M);
}
