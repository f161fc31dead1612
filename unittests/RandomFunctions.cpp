//===- RandomFunctions.cpp - Modules of every kind, by a seed -------------===//

#include "RandomFunctions.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/DepthFirstIterator.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InlineAsm.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/raw_ostream.h"
#include <algorithm>
#include <map>

using namespace llvm;
using namespace llvm::unittest;

namespace {

/// Ways in which a function is used.
enum class Mention {
  Call,
  CallThatPassesIt,
  CallWithBundle,
  CallOfOtherType,
  Invoke,
  PassedOn,
  Stored,
  Compared,
};

/// Something that has to stand somewhere in a body.
struct Wish {
  Mention How;
  Function *Target;
};

/// Fills one function.
class BodyMaker {
public:
  BodyMaker(Random &R, Function &F, std::vector<Wish> Wishes)
      : R(R), F(F), Context(F.getContext()), M(*F.getParent()),
        Wishes(std::move(Wishes)) {}

  void make() {
    makeBlocks();
    DT.recalculate(F);
    // A block after those that dominate it; the unreachable ones, in which
    // everything may be used, last.
    for (DomTreeNode *Node : depth_first(DT.getRootNode()))
      Order.push_back(Node->getBlock());
    for (BasicBlock &BB : F)
      if (!DT.isReachableFromEntry(&BB))
        Order.push_back(&BB);
    for (const Wish &W : Wishes)
      if (W.How != Mention::Invoke)
        WishesOf[R.pick(Order)].push_back(W);
    for (BasicBlock *BB : Order)
      fill(*BB);
    for (PHINode *Phi : Phis)
      fillPhi(*Phi);
  }

private:
  //===--------------------------------------------------------------------===//
  // Blocks and how they lead to each other
  //===--------------------------------------------------------------------===//

  void makeBlocks() {
    const unsigned Count = R.percent(60) ? 1 + R.below(5) : 2 + R.below(12);
    for (unsigned N = 0; N != Count; ++N)
      Blocks.push_back(
          BasicBlock::Create(Context, N ? "b" + Twine(N) : Twine("entry"), &F));
    // All invokes come first.
    BasicBlock *Tail = Blocks.front();
    for (const Wish &W : Wishes)
      if (W.How == Mention::Invoke)
        Tail = makeInvoke(*Tail, *W.Target);
    makeTerminator(*Tail, 0);
    for (unsigned N = 1; N != Count; ++N)
      makeTerminator(*Blocks[N], N);
  }

  /// Goes on in a block of its own, which is returned, and unwinds to another.
  BasicBlock *makeInvoke(BasicBlock &BB, Function &Target) {
    if (!F.hasPersonalityFn())
      F.setPersonalityFn(cast<Constant>(
          M.getOrInsertFunction("personality",
                                FunctionType::get(Type::getInt32Ty(Context),
                                                  /*isVarArg=*/true))
              .getCallee()));
    BasicBlock *Pad = BasicBlock::Create(Context, "pad", &F);
    Type *PadTy = StructType::get(PointerType::get(Context, 0),
                                  Type::getInt32Ty(Context));
    auto *Landing = LandingPadInst::Create(PadTy, 0, "landed", Pad);
    Landing->setCleanup(true);
    if (R.percent(50))
      ResumeInst::Create(Landing, Pad);
    else
      makeReturn(*Pad);
    std::vector<Value *> Arguments;
    for (Type *Ty : Target.getFunctionType()->params())
      Arguments.push_back(makeConstant(Ty));
    BasicBlock *After = BasicBlock::Create(Context, "after", &F);
    InvokeInst::Create(&Target, After, Pad, Arguments, "", &BB);
    return After;
  }

  /// Any block but the first may be led to.
  BasicBlock *pickSuccessor(unsigned Number) {
    // The next one often, so that most blocks are reachable.
    if (Number + 1 < Blocks.size() && R.percent(50))
      return Blocks[Number + 1];
    return Blocks[1 + R.below(Blocks.size() - 1)];
  }

  void makeReturn(BasicBlock &BB) {
    Type *Ty = F.getReturnType();
    ReturnInst::Create(Context, Ty->isVoidTy() ? nullptr : makeConstant(Ty),
                       &BB);
  }

  /// Conditions and results are chosen when the block is filled.
  void makeTerminator(BasicBlock &BB, unsigned Number) {
    const unsigned Kind =
        Blocks.size() == 1 ? 0 : R.weighted({20, 20, 40, 15, 3, 2});
    Type *I1 = Type::getInt1Ty(Context);
    switch (Kind) {
    case 0:
      makeReturn(BB);
      break;
    case 1:
      BranchInst::Create(pickSuccessor(Number), &BB);
      break;
    case 2:
      BranchInst::Create(pickSuccessor(Number), pickSuccessor(Number),
                         ConstantInt::getTrue(I1), &BB);
      break;
    case 3: {
      Type *Ty = R.pick(std::vector<Type *>{Type::getInt32Ty(Context),
                                            Type::getInt8Ty(Context),
                                            Type::getInt64Ty(Context)});
      const unsigned Cases = R.below(5);
      auto *Switch = SwitchInst::Create(ConstantInt::get(Ty, 0),
                                        pickSuccessor(Number), Cases, &BB);
      for (unsigned N = 0; N != Cases; ++N)
        Switch->addCase(cast<ConstantInt>(ConstantInt::get(Ty, N * 3)),
                        pickSuccessor(Number));
      break;
    }
    case 4:
      new UnreachableInst(Context, &BB);
      break;
    case 5: {
      auto *Indirect = IndirectBrInst::Create(
          ConstantPointerNull::get(PointerType::get(Context, 0)), 2, &BB);
      Indirect->addDestination(pickSuccessor(Number));
      Indirect->addDestination(pickSuccessor(Number));
      break;
    }
    }
  }

  //===--------------------------------------------------------------------===//
  // Values
  //===--------------------------------------------------------------------===//

  Constant *makeConstant(Type *Ty) {
    if (Ty->isIntegerTy())
      return ConstantInt::get(Ty, R.below(12));
    if (Ty->isFloatingPointTy())
      return ConstantFP::get(Ty, R.below(5));
    if (Ty->isVectorTy() && R.percent(50))
      return ConstantInt::get(Ty, 1 + R.below(5));
    return Constant::getNullValue(Ty);
  }

  /// What \p BB may use at its end.
  std::vector<Value *> getAvailable(BasicBlock &BB) {
    std::vector<Value *> Available;
    for (Argument &A : F.args())
      Available.push_back(&A);
    for (BasicBlock *Above : Order)
      if (DT.dominates(Above, &BB))
        for (Instruction &I : *Above)
          if (!I.getType()->isVoidTy() && !I.isTerminator())
            Available.push_back(&I);
    return Available;
  }

  /// Some value of the type; the newer, the likelier.
  Value *pickValue(Type *Ty, unsigned ConstantChance = 25) {
    std::vector<Value *> Fitting;
    for (Value *V : Available)
      if (V->getType() == Ty)
        Fitting.push_back(V);
    if (Fitting.empty() || R.percent(ConstantChance))
      return makeConstant(Ty);
    if (R.percent(30))
      return Fitting.back();
    // The arguments stand in front; they are what folding starts from.
    return R.percent(25) ? Fitting.front() : R.pick(Fitting);
  }

  Type *pickInteger() {
    std::vector<Type *> Types;
    for (Value *V : Available)
      if (V->getType()->isIntegerTy())
        Types.push_back(V->getType());
    return Types.empty() || R.percent(10) ? Type::getInt32Ty(Context)
                                          : R.pick(Types);
  }

  //===--------------------------------------------------------------------===//
  // Instructions
  //===--------------------------------------------------------------------===//

  void fill(BasicBlock &BB) {
    Block = &BB;
    Available = getAvailable(BB);
    const bool IsPad = BB.isLandingPad();
    if (!IsPad && &BB != &F.getEntryBlock())
      for (unsigned Count = R.weighted({70, 20, 10}); Count; --Count)
        addPhi();
    std::vector<Wish> &Here = WishesOf[&BB];
    for (unsigned Count = R.below(R.percent(80) ? 5 : 12); Count; --Count) {
      if (!Here.empty() && R.percent(40)) {
        addWish(Here.back());
        Here.pop_back();
      }
      addInstruction();
    }
    for (const Wish &W : Here)
      addWish(W);
    decideTerminator(*BB.getTerminator());
  }

  void add(Instruction *I) {
    I->insertBefore(Block->getTerminator());
    if (!I->getType()->isVoidTy())
      Available.push_back(I);
  }

  void addPhi() {
    Type *Ty = R.pick(std::vector<Type *>{Type::getInt32Ty(Context),
                                          Type::getInt1Ty(Context),
                                          Type::getInt64Ty(Context)});
    auto *Phi = PHINode::Create(Ty, 2);
    Phi->insertBefore(&Block->front());
    Available.push_back(Phi);
    Phis.push_back(Phi);
  }

  /// By now everything has been made that can come in.
  void fillPhi(PHINode &Phi) {
    std::map<BasicBlock *, Value *> Incoming;
    for (BasicBlock *Pred : predecessors(Phi.getParent())) {
      auto [It, New] = Incoming.try_emplace(Pred, nullptr);
      if (New) {
        Available = getAvailable(*Pred);
        It->second = pickValue(Phi.getType());
      }
      Phi.addIncoming(It->second, Pred);
    }
    if (Phi.getNumIncomingValues() == 0) {
      // A block without predecessors.
      Phi.replaceAllUsesWith(makeConstant(Phi.getType()));
      Phi.eraseFromParent();
    }
  }

  void addInstruction() {
    switch (R.weighted({30, 18, 22, 6, 3, 4, 4, 3, 3, 2, 2, 5})) {
    case 0:
      return addBinary();
    case 1:
      return addCompare();
    case 2:
      return addCast();
    case 3: {
      Type *I8 = Type::getInt8Ty(Context);
      Type *Ptr = PointerType::get(Context, 0);
      return add(GetElementPtrInst::Create(
          I8, pickValue(Ptr), {pickValue(Type::getInt64Ty(Context), 10)}));
    }
    case 4:
      return add(new LoadInst(Type::getInt32Ty(Context),
                              pickValue(PointerType::get(Context, 0)), "",
                              /*isVolatile=*/false, Align(4)));
    case 5: {
      Type *Ty = pickInteger();
      return add(SelectInst::Create(pickValue(Type::getInt1Ty(Context), 0),
                                    pickValue(Ty), pickValue(Ty)));
    }
    case 6:
      return add(new FreezeInst(pickValue(pickInteger(), 0)));
    case 7:
      return add(new StoreInst(pickValue(pickInteger()),
                               pickValue(PointerType::get(Context, 0)),
                               /*isVolatile=*/false, Align(1)));
    case 8:
      return add(UnaryOperator::Create(Instruction::FNeg,
                                       pickValue(Type::getFloatTy(Context))));
    case 9:
      return add(
          new AllocaInst(Type::getInt32Ty(Context), 0, nullptr, Align(4)));
    case 10: {
      Type *Ty = FixedVectorType::get(Type::getInt32Ty(Context), 2);
      return add(InsertElementInst::Create(
          pickValue(Ty), pickValue(Type::getInt32Ty(Context)),
          ConstantInt::get(Type::getInt32Ty(Context), R.below(2))));
    }
    default:
      return addOtherCall();
    }
  }

  void addBinary() {
    using BinaryOps = Instruction::BinaryOps;
    if (R.percent(12)) {
      Type *Ty = R.percent(50) ? Type::getFloatTy(Context)
                               : static_cast<Type *>(FixedVectorType::get(
                                     Type::getInt32Ty(Context), 2));
      const BinaryOps Operation =
          Ty->isVectorTy()
              ? R.pick<BinaryOps>({Instruction::Add, Instruction::And})
              : R.pick<BinaryOps>({Instruction::FAdd, Instruction::FSub,
                                   Instruction::FMul, Instruction::FDiv,
                                   Instruction::FRem});
      return add(BinaryOperator::Create(Operation, pickValue(Ty, 10),
                                        pickValue(Ty, 50)));
    }
    Type *Ty = pickInteger();
    const auto Operation = R.pick<BinaryOps>(
        {Instruction::Add, Instruction::Sub, Instruction::Mul,
         Instruction::UDiv, Instruction::SDiv, Instruction::URem,
         Instruction::SRem, Instruction::Shl, Instruction::LShr,
         Instruction::AShr, Instruction::And, Instruction::Or,
         Instruction::Xor});
    Value *Left = pickValue(Ty, 5), *Right = pickValue(Ty, 60);
    if (R.percent(20))
      std::swap(Left, Right);
    add(BinaryOperator::Create(Operation, Left, Right));
  }

  void addCompare() {
    switch (R.weighted({75, 10, 15})) {
    case 0: {
      Type *Ty = pickInteger();
      Value *Left = pickValue(Ty, 5), *Right = pickValue(Ty, 60);
      if (R.percent(20))
        std::swap(Left, Right);
      return add(CmpInst::Create(
          Instruction::ICmp,
          R.percent(50) ? CmpInst::ICMP_EQ : CmpInst::ICMP_SLT, Left, Right));
    }
    case 1: {
      Type *Ty = PointerType::get(Context, 0);
      return add(CmpInst::Create(Instruction::ICmp, CmpInst::ICMP_NE,
                                 pickValue(Ty, 10), pickValue(Ty, 50)));
    }
    default: {
      Type *Ty = Type::getFloatTy(Context);
      return add(CmpInst::Create(Instruction::FCmp, CmpInst::FCMP_OLT,
                                 pickValue(Ty, 10), pickValue(Ty, 50)));
    }
    }
  }

  void addCast() {
    Value *V = pickValue(pickInteger(), 5);
    if (R.percent(25))
      V = pickValue(R.percent(50) ? Type::getFloatTy(Context)
                                  : PointerType::get(Context, 0),
                    10);
    Type *Ty = V->getType();
    std::vector<std::pair<Instruction::CastOps, Type *>> Ways;
    auto Try = [&](Instruction::CastOps Cast, Type *To) {
      if (CastInst::castIsValid(Cast, Ty, To))
        Ways.push_back({Cast, To});
    };
    for (unsigned Width : {1, 8, 32, 64}) {
      Type *To = Type::getIntNTy(Context, Width);
      for (auto Cast :
           {Instruction::Trunc, Instruction::ZExt, Instruction::SExt,
            Instruction::FPToUI, Instruction::FPToSI, Instruction::PtrToInt,
            Instruction::BitCast})
        Try(Cast, To);
    }
    for (Type *To : {Type::getFloatTy(Context), Type::getDoubleTy(Context)})
      for (auto Cast :
           {Instruction::UIToFP, Instruction::SIToFP, Instruction::FPTrunc,
            Instruction::FPExt, Instruction::BitCast})
        Try(Cast, To);
    Try(Instruction::IntToPtr, PointerType::get(Context, 0));
    Try(Instruction::BitCast, PointerType::get(Context, 0));
    Try(Instruction::AddrSpaceCast, PointerType::get(Context, 1));
    Try(Instruction::BitCast,
        FixedVectorType::get(Type::getInt32Ty(Context), 2));
    const auto [Cast, To] = R.pick(Ways);
    add(CastInst::Create(Cast, V, To));
  }

  std::vector<Value *> pickArguments(FunctionType *Ty) {
    std::vector<Value *> Arguments;
    for (Type *Param : Ty->params())
      Arguments.push_back(pickValue(Param));
    return Arguments;
  }

  /// Of nothing that the module defines.
  void addOtherCall() {
    Type *I32 = Type::getInt32Ty(Context);
    Type *Ptr = PointerType::get(Context, 0);
    auto *UnaryTy = FunctionType::get(I32, {I32}, /*isVarArg=*/false);
    if (R.percent(15))
      return add(CallInst::Create(
          UnaryTy, InlineAsm::get(UnaryTy, "", "=r,r", /*SideEffects=*/true),
          pickArguments(UnaryTy)));
    if (R.percent(20))
      return add(
          CallInst::Create(UnaryTy, pickValue(Ptr), pickArguments(UnaryTy)));
    FunctionCallee Callee =
        R.percent(30) ? M.getOrInsertFunction("llvm.ctpop.i32", UnaryTy)
                      : M.getOrInsertFunction(
                            R.percent(50) ? "outside" : "elsewhere", UnaryTy);
    add(CallInst::Create(Callee, pickArguments(UnaryTy)));
  }

  void addWish(const Wish &W) {
    Function &Target = *W.Target;
    FunctionType *Ty = Target.getFunctionType();
    Type *Ptr = PointerType::get(Context, 0);
    Type *I32 = Type::getInt32Ty(Context);
    std::vector<Value *> Arguments = pickArguments(Ty);
    switch (W.How) {
    case Mention::CallThatPassesIt:
      for (Value *&A : Arguments)
        if (A->getType() == Ptr)
          A = &Target;
      [[fallthrough]];
    case Mention::Call: {
      auto *Call = CallInst::Create(Ty, &Target, Arguments);
      Call->setCallingConv(Target.getCallingConv());
      if (R.percent(20))
        Call->addFnAttr(Attribute::NoUnwind);
      return add(Call);
    }
    case Mention::CallWithBundle: {
      std::vector<Value *> Inputs = {&Target, pickValue(I32)};
      OperandBundleDef Bundle("state", Inputs);
      return add(CallInst::Create(Ty, &Target, Arguments, {Bundle}));
    }
    case Mention::CallOfOtherType: {
      auto *OtherTy =
          FunctionType::get(Type::getDoubleTy(Context), {I32, I32}, false);
      return add(CallInst::Create(OtherTy, &Target, pickArguments(OtherTy)));
    }
    case Mention::PassedOn: {
      auto *TakerTy = FunctionType::get(Type::getVoidTy(Context), {Ptr}, false);
      return add(
          CallInst::Create(M.getOrInsertFunction("take", TakerTy), {&Target}));
    }
    case Mention::Stored:
      return add(new StoreInst(&Target, pickValue(Ptr), /*isVolatile=*/false,
                               Align(8)));
    case Mention::Compared:
      return add(CmpInst::Create(Instruction::ICmp, CmpInst::ICMP_EQ, &Target,
                                 pickValue(Ptr)));
    case Mention::Invoke:
      return;
    }
  }

  void decideTerminator(Instruction &Terminator) {
    if (auto *Branch = dyn_cast<BranchInst>(&Terminator)) {
      if (Branch->isUnconditional())
        return;
      if (R.percent(50))
        addCompare();
      Branch->setCondition(pickValue(Type::getInt1Ty(Context), 3));
    } else if (auto *Switch = dyn_cast<SwitchInst>(&Terminator)) {
      Switch->setCondition(pickValue(Switch->getCondition()->getType(), 3));
    } else if (auto *Return = dyn_cast<ReturnInst>(&Terminator)) {
      if (Return->getReturnValue())
        Return->setOperand(0, pickValue(F.getReturnType()));
    }
  }

  Random &R;
  Function &F;
  LLVMContext &Context;
  Module &M;
  const std::vector<Wish> Wishes;
  DominatorTree DT;
  std::vector<BasicBlock *> Blocks, Order;
  std::map<BasicBlock *, std::vector<Wish>> WishesOf;
  std::vector<PHINode *> Phis;
  /// Where instructions are put at the moment, and what they may use.
  BasicBlock *Block = nullptr;
  std::vector<Value *> Available;
};

/// Makes a module.
class ModuleMaker {
public:
  explicit ModuleMaker(uint64_t Seed) : R(Seed), M("random", Context) {}

  std::string make() {
    const unsigned Count = 1 + R.below(4);
    for (unsigned N = 0; N != Count; ++N) {
      Functions.push_back(makeFunction("f" + std::to_string(N)));
      if (R.percent(15))
        M.getOrInsertFunction(
            "outside", FunctionType::get(Type::getInt32Ty(Context),
                                         {Type::getInt32Ty(Context)}, false));
    }
    const std::vector<Function *> Planned = Functions;
    for (Function *F : Planned)
      plan(*F);
    for (Function *F : Functions)
      BodyMaker(R, *F, Wishes[F]).make();

    std::string Text;
    raw_string_ostream OS(Text);
    OS << M;
    return OS.str();
  }

private:
  Type *pickType() {
    switch (R.weighted({60, 10, 8, 12, 4, 6})) {
    case 0:
      return Type::getInt32Ty(Context);
    case 1:
      return Type::getInt64Ty(Context);
    case 2:
      return Type::getInt8Ty(Context);
    case 3:
      return PointerType::get(Context, 0);
    case 4:
      return Type::getInt1Ty(Context);
    default:
      return Type::getFloatTy(Context);
    }
  }

  Function *makeFunction(const std::string &Name) {
    std::vector<Type *> Parameters;
    for (unsigned Count = R.weighted({5, 65, 20, 10}); Count; --Count)
      Parameters.push_back(pickType());
    Type *Result = R.percent(20) ? Type::getVoidTy(Context) : pickType();
    const auto Linkage = R.pick<GlobalValue::LinkageTypes>(
        {GlobalValue::InternalLinkage, GlobalValue::ExternalLinkage,
         GlobalValue::WeakAnyLinkage});
    auto *F = Function::Create(
        FunctionType::get(Result, Parameters, /*isVarArg=*/R.percent(3)),
        Linkage, Name, M);
    if (!F->isVarArg() && R.percent(10))
      F->setCallingConv(CallingConv::Fast);
    switch (R.weighted({68, 5, 5, 12, 6, 4})) {
    case 1:
      F->addFnAttr(Attribute::NoRecurse);
      break;
    case 2:
      F->addFnAttr(Attribute::OptimizeNone);
      F->addFnAttr(Attribute::NoInline);
      break;
    case 3:
      F->addFnAttr(Attribute::NoInline);
      break;
    case 4:
      F->addFnAttr(Attribute::AlwaysInline);
      break;
    case 5:
      F->addFnAttr("llvm.recurse.clone");
      break;
    }
    if (R.percent(20))
      F->addFnAttr("specialize-inline-recursion-function");
    return F;
  }

  /// Who is to mention \p F, and how.
  void plan(Function &F) {
    auto Wants = [&](Function *Where, Mention How) {
      Wishes[Where].push_back({How, &F});
    };
    const auto Elsewhere = [&]() -> Function * {
      std::vector<Function *> Others;
      for (Function *Other : Functions)
        if (Other != &F)
          Others.push_back(Other);
      if (!Others.empty() && R.percent(60))
        return R.pick(Others);
      if (Callers.empty() || R.percent(50)) {
        auto *Ty = FunctionType::get(Type::getVoidTy(Context),
                                     {Type::getInt32Ty(Context)}, false);
        Callers.push_back(Function::Create(Ty, GlobalValue::ExternalLinkage,
                                           "caller" + Twine(Callers.size()),
                                           M));
        Functions.push_back(Callers.back());
      }
      return R.pick(Callers);
    };
    for (unsigned Count = R.weighted({6, 76, 13, 5}); Count; --Count)
      Wants(&F, Mention::Call);
    for (unsigned Count = R.weighted({10, 65, 15, 10}); Count; --Count)
      Wants(Elsewhere(), Mention::Call);
    for (Mention How : {Mention::CallThatPassesIt, Mention::CallWithBundle,
                        Mention::CallOfOtherType, Mention::Invoke,
                        Mention::PassedOn, Mention::Stored, Mention::Compared})
      if (R.percent(4))
        Wants(R.percent(50) ? &F : Elsewhere(), How);
    if (R.percent(4))
      new GlobalVariable(M, PointerType::get(Context, 0), /*isConstant=*/true,
                         GlobalValue::InternalLinkage, &F, "table");
    if (R.percent(2))
      new GlobalVariable(
          M, Type::getInt64Ty(Context), /*isConstant=*/true,
          GlobalValue::ExternalLinkage,
          ConstantExpr::getPtrToInt(&F, Type::getInt64Ty(Context)), "number");
  }

  Random R;
  LLVMContext Context;
  Module M;
  /// All that get a body; the callers among them do nothing but call.
  std::vector<Function *> Functions, Callers;
  std::map<Function *, std::vector<Wish>> Wishes;
};

} // namespace

std::string llvm::unittest::makeRandomModule(uint64_t Seed) {
  return ModuleMaker(Seed).make();
}

void llvm::unittest::shuffleUses(Module &M, uint64_t Seed) {
  Random R(Seed);
  auto Shuffle = [&R](Value &V) {
    DenseMap<const Use *, unsigned> Rank;
    for (const Use &U : V.uses())
      Rank[&U] = R.below(1000);
    V.sortUseList([&Rank](const Use &A, const Use &B) {
      return Rank.lookup(&A) < Rank.lookup(&B);
    });
  };
  for (Function &F : M) {
    Shuffle(F);
    for (Argument &A : F.args())
      Shuffle(A);
  }
}
