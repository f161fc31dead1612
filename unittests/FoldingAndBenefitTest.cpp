//===- FoldingAndBenefitTest.cpp - What a constant argument would fold ----===//
///
/// \file
/// The folding estimate is local to the pass's source file, so that file is
/// part of this one.  The benefit is compared with a slow restatement of its
/// definition over generated control flow.
///
//===----------------------------------------------------------------------===//

#include "pass/InlineRecursion.cpp"

#include "TestModule.h"
#include "llvm/IR/IRBuilder.h"
#include <random>

using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using InstMap = MapVector<Instruction *, bool>;
using ValueMapVector = MapVector<Value *, bool>;

/// The three maps of one estimate.
struct Folding {
  InstMap Simplified;
  InstMap Decided;
  ValueMapVector Visited;

  void walk(Value *V) {
    estimateInstSimplificationWhenValueIsConstant(V, Simplified, Decided,
                                                  Visited);
  }
};

template <typename MapT> std::vector<std::string> names(const MapT &Map) {
  std::vector<std::string> Names;
  for (const auto &[Key, Value] : Map) {
    EXPECT_TRUE(Value);
    Names.push_back(Key->hasName() ? Key->getName().str()
                                   : cast<Instruction>(Key)->getOpcodeName());
  }
  return Names;
}

/// A function with \p Parameters and \p Body.
std::string function(const std::string &Parameters, const std::string &Body) {
  return "define void @f(" + Parameters + ") {\n" + Body + "\n}\n";
}

class FoldingTest : public PassTest {
protected:
  /// Walks the first argument of a function with this \p Body.
  void walk(const std::string &Body, const std::string &Parameters = "i32 %n",
            const std::string &Before = "") {
    TM = std::make_unique<TestModule>(Before + function(Parameters, Body));
    const std::string Text = TM->text();
    Result = Folding();
    Result.walk(TM->function("f").getArg(0));
    EXPECT_EQ(TM->text(), Text);
  }
  std::vector<std::string> simplified() { return names(Result.Simplified); }
  std::vector<std::string> decided() { return names(Result.Decided); }
  std::vector<std::string> visited() { return names(Result.Visited); }

  std::unique_ptr<TestModule> TM;
  Folding Result;
};

TEST_F(FoldingTest, AddCompareBranch) {
  walk("  %a = add i32 %n, 1\n  %c = icmp eq i32 %a, 10\n"
       "  br i1 %c, label %x, label %y\nx:\n  ret void\ny:\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("a", "c"));
  EXPECT_THAT(decided(), ElementsAre("br"));
  EXPECT_THAT(visited(), ElementsAre("n", "a", "c"));
}

TEST_F(FoldingTest, NoUses) {
  walk("  ret void");
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(decided(), IsEmpty());
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, EveryIntegerOperationWithALiteralOnEitherSide) {
  for (const char *Op :
       {"add", "sub", "mul", "udiv", "sdiv", "urem", "srem", "shl", "lshr",
        "ashr", "and", "or", "xor", "icmp ult"}) {
    SCOPED_TRACE(Op);
    walk(std::string("  %r = ") + Op + " i32 %n, 3\n  ret void");
    EXPECT_THAT(simplified(), ElementsAre("r"));
    EXPECT_THAT(visited(), ElementsAre("n", "r"));
    walk(std::string("  %r = ") + Op + " i32 3, %n\n  ret void");
    EXPECT_THAT(simplified(), ElementsAre("r"));
  }
}

TEST_F(FoldingTest, AnOperationWithoutALiteralStopsTheWalk) {
  walk("  %r = add i32 %n, %m\n  %s = add i32 %r, 1\n"
       "  %c = icmp eq i32 %n, %m\n  br i1 %c, label %x, label %x\n"
       "x:\n  ret void",
       "i32 %n, i32 %m");
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(decided(), IsEmpty());
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, TwoValuesOfTheChainAreNotALiteral) {
  walk("  %a = add i32 %n, 1\n  %b = add i32 %n, 2\n  %s = add i32 %a, %b\n"
       "  %q = mul i32 %n, %n\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("b", "a"));
}

TEST_F(FoldingTest, OtherConstantsAreNotIntegerLiterals) {
  walk("  %r = add <2 x i32> %v, <i32 1, i32 1>\n  ret void", "<2 x i32> %v");
  EXPECT_THAT(simplified(), IsEmpty());
  walk("  %r = add <2 x i32> %v, zeroinitializer\n  ret void", "<2 x i32> %v");
  EXPECT_THAT(simplified(), IsEmpty());
  walk("  %r = icmp eq ptr %p, null\n  ret void", "ptr %p");
  EXPECT_THAT(simplified(), IsEmpty());
  walk("  %r = add i32 %n, undef\n  %s = add i32 %n, poison\n  ret void");
  EXPECT_THAT(simplified(), IsEmpty());
  walk("  %r = add i64 %n, ptrtoint (ptr @g to i64)\n  ret void", "i64 %n",
       "@g = global i32 0\n");
  EXPECT_THAT(simplified(), IsEmpty());
  walk("  %r = fadd double %d, 1.0\n  %s = fsub double 1.0, %d\n"
       "  %t = fmul double %d, 2.0\n  %u = fdiv double %d, 2.0\n"
       "  %v = frem double %d, 2.0\n  %w = fcmp olt double %d, 0.0\n"
       "  ret void",
       "double %d");
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(visited(), ElementsAre("d"));
}

TEST_F(FoldingTest, EveryCastIsCounted) {
  walk("  %a = trunc i32 %n to i8\n  %b = zext i32 %n to i64\n"
       "  %c = sext i32 %n to i64\n  %d = uitofp i32 %n to float\n"
       "  %e = sitofp i32 %n to float\n  %f = inttoptr i32 %n to ptr\n"
       "  %g = bitcast i32 %n to float\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("g", "f", "e", "d", "c", "b", "a"));
  EXPECT_THAT(visited(), ElementsAre("n", "g", "f", "e", "d", "c", "b", "a"));
  walk("  %a = fptoui float %x to i32\n  %b = fptosi float %x to i32\n"
       "  %c = fpext float %x to double\n  %d = fptrunc float %x to half\n"
       "  ret void",
       "float %x");
  EXPECT_THAT(simplified(), ElementsAre("d", "c", "b", "a"));
  walk("  %a = ptrtoint ptr %p to i64\n"
       "  %b = addrspacecast ptr %p to ptr addrspace(1)\n  ret void",
       "ptr %p");
  EXPECT_THAT(simplified(), ElementsAre("b", "a"));
}

TEST_F(FoldingTest, ACastIsWalkedOn) {
  walk("  %w = sext i32 %n to i64\n  %c = icmp slt i64 %w, 5\n"
       "  br i1 %c, label %x, label %x\nx:\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("w", "c"));
  EXPECT_THAT(decided(), ElementsAre("br"));
}

TEST_F(FoldingTest, ANegationIsNotCounted) {
  walk("  %d = sitofp i32 %n to double\n  %m = fneg double %d\n"
       "  %i = fptosi double %m to i32\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("d"));
  EXPECT_THAT(visited(), ElementsAre("n", "d"));
}

TEST_F(FoldingTest, AnAddressIsCountedAndEndsTheWalk) {
  walk("  %p = getelementptr i32, ptr @g, i32 %n\n  %l = load i32, ptr %p\n"
       "  %s = add i32 %l, 1\n  %i = ptrtoint ptr %p to i64\n  ret void",
       "i32 %n", "@g = global i32 0\n");
  EXPECT_THAT(simplified(), ElementsAre("p"));
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, ASwitchIsDecided) {
  walk("  switch i32 %n, label %x [ i32 1, label %y ]\nx:\n  ret void\n"
       "y:\n  %a = add i32 1, 1\n  ret void");
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(decided(), ElementsAre("switch"));
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, EverythingElseStopsTheWalk) {
  walk(R"(
entry:
  %slot = alloca i32
  %sized = alloca i32, i32 %n
  store i32 %n, ptr %slot
  %select = select i1 true, i32 %n, i32 0
  %called = call i32 @ext(i32 %n)
  %frozen = freeze i32 %n
  %agg = insertvalue { i32, i32 } undef, i32 %n, 0
  %out = extractvalue { i32, i32 } %agg, 0
  %vec = insertelement <2 x i32> undef, i32 %n, i32 0
  %elt = extractelement <2 x i32> undef, i32 %n
  %atomic = atomicrmw add ptr %slot, i32 %n seq_cst
  %x = cmpxchg ptr %slot, i32 %n, i32 0 seq_cst seq_cst
  br label %next
next:
  %phi = phi i32 [ %n, %entry ]
  %a = add i32 %phi, 1
  %b = add i32 %select, 1
  %c = add i32 %called, 1
  %d = add i32 %frozen, 1
  %e = add i32 %out, 1
  ret void)",
       "i32 %n", "declare i32 @ext(i32)\n");
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(decided(), IsEmpty());
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, AnInvokeAndAReturnStopTheWalk) {
  TM = std::make_unique<TestModule>(R"(
declare i32 @pers(...)
declare i32 @ext(i32)
define i32 @f(i32 %n) personality ptr @pers {
  %r = invoke i32 @ext(i32 %n) to label %fine unwind label %pad
fine:
  %a = add i32 %r, 1
  ret i32 %n
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
})");
  Result.walk(TM->function("f").getArg(0));
  EXPECT_THAT(simplified(), IsEmpty());
  EXPECT_THAT(decided(), IsEmpty());
  EXPECT_THAT(visited(), ElementsAre("n"));
}

TEST_F(FoldingTest, AnIndirectBranchIsNotDecided) {
  walk("  indirectbr ptr %p, [ label %x, label %x ]\nx:\n  ret void", "ptr %p");
  EXPECT_THAT(decided(), IsEmpty());
}

TEST_F(FoldingTest, UsersOfAUserComeBeforeTheNextUser) {
  // The use list runs backwards: a before b.
  walk("  %b = sub i32 %n, 3\n  %a = add i32 %n, 1\n  %a2 = mul i32 %a, 2\n"
       "  %a3 = mul i32 %a2, 2\n  %b2 = mul i32 %b, 2\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("a", "a2", "a3", "b", "b2"));
  EXPECT_THAT(visited(), ElementsAre("n", "a", "a2", "a3", "b", "b2"));
}

TEST_F(FoldingTest, DecidedTerminatorsStandInTheOrderOfTheWalk) {
  walk(R"(
entry:
  %w = zext i32 %n to i64
  %c = icmp eq i32 %n, 1
  br i1 %c, label %x, label %y
x:
  switch i32 %n, label %z [ i32 1, label %y ]
y:
  %d = icmp eq i64 %w, 1
  br i1 %d, label %z, label %z
z:
  ret void)");
  // Uses of n: the switch, then c, then w.
  ASSERT_EQ(Result.Decided.size(), 3u);
  auto It = Result.Decided.begin();
  EXPECT_EQ((It++)->first->getParent()->getName(), "x");
  EXPECT_EQ((It++)->first->getParent()->getName(), "entry");
  EXPECT_EQ((It++)->first->getParent()->getName(), "y");
}

TEST_F(FoldingTest, WhatIsReachedTwiceIsEnteredOnce) {
  // c uses the chain through two values, d twice through one.
  walk("  %c = trunc i32 %n to i1\n  %d = and i1 %c, true\n"
       "  %e = xor i1 true, %c\n  br i1 %c, label %x, label %y\n"
       "x:\n  br i1 %c, label %y, label %y\ny:\n  ret void");
  EXPECT_THAT(simplified(), ElementsAre("c", "e", "d"));
  EXPECT_THAT(decided(), ElementsAre("br", "br"));
}

TEST_F(FoldingTest, ASecondWalkChangesNothing) {
  walk("  %a = add i32 %n, 1\n  %c = icmp eq i32 %a, 10\n"
       "  br i1 %c, label %x, label %x\nx:\n  ret void");
  Result.walk(TM->function("f").getArg(0));
  EXPECT_THAT(simplified(), ElementsAre("a", "c"));
  EXPECT_THAT(decided(), ElementsAre("br"));
  EXPECT_THAT(visited(), ElementsAre("n", "a", "c"));
}

TEST_F(FoldingTest, AVisitedValueIsNotWalkedWhateverItsEntrySays) {
  TM = std::make_unique<TestModule>(
      function("i32 %n", "  %a = add i32 %n, 1\n  %b = add i32 %a, 1\n"
                         "  ret void"));
  Function &F = TM->function("f");
  Result.Visited[F.getArg(0)] = false;
  Result.walk(F.getArg(0));
  EXPECT_TRUE(Result.Simplified.empty());
  EXPECT_FALSE(Result.Visited[F.getArg(0)]);

  // An instruction that was visited is marked all the same, not walked.
  Folding Other;
  Other.Visited[TestModule::find(F, "a")] = false;
  Other.walk(F.getArg(0));
  EXPECT_THAT(names(Other.Simplified), ElementsAre("a"));
}

TEST_F(FoldingTest, EntriesOfAnEarlierWalkKeepTheirPlaceAndBecomeTrue) {
  TM = std::make_unique<TestModule>(function(
      "i32 %n", "  %a = add i32 %n, 1\n  %b = add i32 %n, 2\n  ret void"));
  Function &F = TM->function("f");
  Result.Simplified[TestModule::find(F, "a")] = false;
  Result.walk(F.getArg(0));
  EXPECT_THAT(simplified(), ElementsAre("a", "b"));
}

TEST_F(FoldingTest, UsersThatAreNoInstructionsAreSkipped) {
  TestModule Globals("@g = global i32 0\n"
                     "@h = global i64 ptrtoint (ptr @g to i64)\n" +
                     function("", "  %p = ptrtoint ptr @g to i64\n"
                                  "  %s = add i64 ptrtoint (ptr @g to i64), 1\n"
                                  "  ret void"));
  Folding OfGlobal;
  OfGlobal.walk(Globals.module().getGlobalVariable("g"));
  EXPECT_THAT(names(OfGlobal.Simplified), ElementsAre("p"));
  EXPECT_THAT(names(OfGlobal.Visited), ElementsAre("g", "p"));
}

TEST_F(FoldingTest, AMillionAdditionsAreNotTooDeep) {
  LLVMContext Context;
  Module M("m", Context);
  Type *Int = Type::getInt32Ty(Context);
  Function *F = Function::Create(
      FunctionType::get(Type::getVoidTy(Context), {Int}, false),
      GlobalValue::ExternalLinkage, "f", M);
  IRBuilder<> Builder(BasicBlock::Create(Context, "", F));
  Value *V = F->getArg(0);
  for (unsigned I = 0; I < 1000000; ++I)
    V = Builder.CreateAdd(V, Builder.getInt32(1));
  Builder.CreateRetVoid();
  Result.walk(F->getArg(0));
  EXPECT_EQ(Result.Simplified.size(), 1000000u);
  EXPECT_EQ(Result.Visited.size(), 1000001u);
  EXPECT_EQ(Result.Simplified.back().first, V);
}

//===----------------------------------------------------------------------===//
// The definitions once more, slowly.
//===----------------------------------------------------------------------===//

void foldingByDefinition(Value *V, InstMap &Simplified, InstMap &Decided,
                         ValueMapVector &Visited) {
  if (Visited.count(V))
    return;
  Visited[V] = true;
  for (User *U : V->users()) {
    auto *I = dyn_cast<Instruction>(U);
    if (!I)
      continue;
    switch (I->getOpcode()) {
    case Instruction::Add:
    case Instruction::FAdd:
    case Instruction::Sub:
    case Instruction::FSub:
    case Instruction::Mul:
    case Instruction::FMul:
    case Instruction::UDiv:
    case Instruction::SDiv:
    case Instruction::FDiv:
    case Instruction::URem:
    case Instruction::SRem:
    case Instruction::FRem:
    case Instruction::Shl:
    case Instruction::LShr:
    case Instruction::AShr:
    case Instruction::And:
    case Instruction::Or:
    case Instruction::Xor:
    case Instruction::ICmp:
    case Instruction::FCmp:
      if (!isa<ConstantInt>(I->getOperand(0)) &&
          !isa<ConstantInt>(I->getOperand(1)))
        break;
      Simplified[I] = true;
      foldingByDefinition(I, Simplified, Decided, Visited);
      break;
    case Instruction::Trunc:
    case Instruction::ZExt:
    case Instruction::SExt:
    case Instruction::FPToUI:
    case Instruction::FPToSI:
    case Instruction::UIToFP:
    case Instruction::SIToFP:
    case Instruction::FPTrunc:
    case Instruction::FPExt:
    case Instruction::PtrToInt:
    case Instruction::IntToPtr:
    case Instruction::BitCast:
    case Instruction::AddrSpaceCast:
      Simplified[I] = true;
      foldingByDefinition(I, Simplified, Decided, Visited);
      break;
    case Instruction::GetElementPtr:
      Simplified[I] = true;
      break;
    case Instruction::Br:
    case Instruction::Switch:
      Decided[I] = true;
      break;
    default:
      break;
    }
  }
}

/// Half the dead code plus the folded instructions.
uint64_t benefitByDefinition(Function &F, const DominatorTree &DT) {
  InstMap Simplified, Decided;
  ValueMapVector Visited;
  foldingByDefinition(F.getArg(0), Simplified, Decided, Visited);

  MapVector<BasicBlock *, unsigned> Sizes;
  for (auto &Entry : Decided) {
    if (auto *Switch = dyn_cast<SwitchInst>(Entry.first)) {
      for (auto &Case : Switch->cases())
        Sizes[Case.getCaseSuccessor()] = 0;
      Sizes[Switch->getDefaultDest()] = 0;
    } else {
      Sizes[Entry.first->getSuccessor(0)] = 0;
      Sizes[Entry.first->getSuccessor(1)] = 0;
    }
  }
  for (BasicBlock &BB : F)
    for (auto &[D, Size] : Sizes)
      if (DT.dominates(D, &BB))
        for (Instruction &I : BB) {
          (void)I;
          ++Size;
        }

  unsigned DeadCode = 0;
  for (auto &Entry : Decided) {
    if (auto *Switch = dyn_cast<SwitchInst>(Entry.first)) {
      unsigned Least = 0;
      for (auto &Case : Switch->cases()) {
        const unsigned Size = Sizes[Case.getCaseSuccessor()];
        if (Size <= Least || Least == 0)
          Least = Size;
        DeadCode += Size;
      }
      const unsigned Default = Sizes[Switch->getDefaultDest()];
      if (Default > Least && Least != 0)
        DeadCode += Default - Least;
    } else {
      const unsigned OnTrue = Sizes[Entry.first->getSuccessor(0)];
      const unsigned OnFalse = Sizes[Entry.first->getSuccessor(1)];
      DeadCode += OnTrue > OnFalse ? OnTrue : OnFalse;
    }
  }
  return uint64_t(DeadCode >> 1) + Simplified.size();
}

//===----------------------------------------------------------------------===//
// Benefit
//===----------------------------------------------------------------------===//

/// \p Name with \p Size instructions, ending in a return.
std::string block(const std::string &Name, unsigned Size) {
  std::string Text = Name + ":\n";
  for (unsigned I = 1; I < Size; ++I)
    Text += "  fence seq_cst\n";
  return Text + "  ret void\n";
}

class BenefitTest : public PassTest {
protected:
  /// Is \p Record's benefit exactly \p Benefit?  With a divisor of 1 the limit
  /// is the size, so the smallest size that refuses is the benefit.
  static ::testing::AssertionResult hasBenefit(Costing Record,
                                               unsigned Benefit) {
    ScopedOption<unsigned> Ratio("inline-recursion-profitablity", 100);
    for (unsigned Size = 0; Size <= 1000; ++Size) {
      Record.NumOfInsts = Size;
      if (Record.estimateInlineBenefitAndCheckInlineFeasiblity())
        continue;
      if (Size == Benefit)
        return ::testing::AssertionSuccess();
      return ::testing::AssertionFailure()
             << "benefit " << Size << " instead of " << Benefit;
    }
    return ::testing::AssertionFailure() << "benefit above 1000";
  }
  static ::testing::AssertionResult hasBenefit(const std::string &Body,
                                               unsigned Benefit) {
    TestModule TM(function("i32 %n", Body));
    return hasBenefit(TM.analyzedRecord("f"), Benefit);
  }

  static bool isEnough(Costing &Record, unsigned Ratio, unsigned NumOfInsts) {
    ScopedOption<unsigned> Option("inline-recursion-profitablity", Ratio);
    Record.NumOfInsts = NumOfInsts;
    return Record.estimateInlineBenefitAndCheckInlineFeasiblity();
  }

  /// \p Count instructions that fold, and nothing that is decided.
  static std::string foldable(unsigned Count) {
    std::string Body;
    for (unsigned I = 0; I < Count; ++I)
      Body += "  %a" + std::to_string(I) + " = add i32 %n, 1\n";
    return Body + "  ret void";
  }
};

TEST_F(BenefitTest, OnlyFunctionsOfOneArgument) {
  ScopedOption<unsigned> Ratio("inline-recursion-profitablity", 100);
  for (const auto &[Parameters, Expected] :
       {std::pair("i32 %n", true), std::pair("i32 %n, i32 %m", false),
        std::pair("i32 %n, i32 %m, i32 %k", false)}) {
    TestModule TM(function(Parameters, foldable(9)));
    Costing Record = TM.record("f");
    EXPECT_EQ(Record.estimateInlineBenefitAndCheckInlineFeasiblity(), Expected);
  }
  TestModule None(function("", "  ret void"));
  Costing Record = None.record("f");
  EXPECT_FALSE(Record.estimateInlineBenefitAndCheckInlineFeasiblity());
}

TEST_F(BenefitTest, FoldedInstructionsCountOnceEach) {
  EXPECT_TRUE(hasBenefit("  ret void", 0));
  EXPECT_TRUE(hasBenefit(foldable(1), 1));
  EXPECT_TRUE(hasBenefit(foldable(5), 5));
}

TEST_F(BenefitTest, TheRatioIsADivisor) {
  struct {
    unsigned Ratio, Divisor;
  } const Rows[] = {{0, 1},  {1, 100}, {3, 33}, {10, 10}, {30, 3},
                    {34, 2}, {50, 2},  {51, 1}, {60, 1},  {100, 1}};
  TestModule TM(function("i32 %n", foldable(4)));
  Costing Record = TM.record("f");
  for (const auto &Row : Rows) {
    SCOPED_TRACE(Row.Ratio);
    // The limit reaches the benefit of 4 at four times the divisor.
    EXPECT_TRUE(isEnough(Record, Row.Ratio, 0));
    EXPECT_TRUE(isEnough(Record, Row.Ratio, 4 * Row.Divisor - 1));
    EXPECT_FALSE(isEnough(Record, Row.Ratio, 4 * Row.Divisor));
    EXPECT_FALSE(isEnough(Record, Row.Ratio, 4294967295u));
  }
}

TEST_F(BenefitTest, ThirtyPerCentOfAHundredIsThirtyThree) {
  TestModule Equal(function("i32 %n", foldable(33)));
  TestModule More(function("i32 %n", foldable(34)));
  Costing EqualRecord = Equal.record("f"), MoreRecord = More.record("f");
  EXPECT_FALSE(isEnough(EqualRecord, 30, 100));
  EXPECT_TRUE(isEnough(MoreRecord, 30, 100));
}

TEST_F(BenefitTest, NothingIsNotMoreThanNothing) {
  TestModule TM(function("i32 %n", "  ret void"));
  Costing Record = TM.record("f");
  for (unsigned Ratio : {0u, 1u, 10u, 100u})
    EXPECT_FALSE(isEnough(Record, Ratio, 0));
}

TEST_F(BenefitTest, NoTreeIsNeededWhileNothingIsDecided) {
  TestModule TM(function("i32 %n", foldable(3)));
  Costing Record(&TM.function("f"), nullptr, nullptr, 0);
  EXPECT_TRUE(hasBenefit(Record, 3));
}

TEST_F(BenefitTest, ABranchAddsItsLargerSide) {
  const std::string Head =
      "  %c = trunc i32 %n to i1\n  br i1 %c, label %x, label %y\n";
  // 7 halved is 3, and the cast folds.
  EXPECT_TRUE(hasBenefit(Head + block("x", 7) + block("y", 3), 3 + 1));
  EXPECT_TRUE(hasBenefit(Head + block("x", 3) + block("y", 7), 3 + 1));
  EXPECT_TRUE(hasBenefit(Head + block("x", 8) + block("y", 8), 4 + 1));
  EXPECT_TRUE(hasBenefit(Head + block("x", 1) + block("y", 1), 0 + 1));
}

TEST_F(BenefitTest, SidesAreSummedBeforeTheyAreHalved) {
  EXPECT_TRUE(hasBenefit("  %c = trunc i32 %n to i1\n"
                         "  br i1 %c, label %x, label %y\n" +
                             block("x", 3) +
                             "y:\n  br i1 %c, label %z, label %w\n" +
                             block("z", 3) + block("w", 1),
                         // y's region has 5, z's has 3.
                         (5 + 3) / 2 + 1));
}

TEST_F(BenefitTest, ARegionIsAllThatItsBlockDominates) {
  EXPECT_TRUE(hasBenefit("  %c = trunc i32 %n to i1\n"
                         "  br i1 %c, label %x, label %join\n"
                         "x:\n  br i1 undef, label %x1, label %x2\n"
                         "x1:\n  fence seq_cst\n  br label %x3\n"
                         "x2:\n  br label %x3\n"
                         "x3:\n  br label %join\n" +
                             block("join", 2),
                         // x, x1, x2, x3, but not join.
                         (1 + 2 + 1 + 1) / 2 + 1));
}

TEST_F(BenefitTest, PhisAndDebugIntrinsicsAreInstructionsOfARegion) {
  TestModule TM("declare void @llvm.donothing()\n" +
                function("i32 %n", "entry:\n  %c = trunc i32 %n to i1\n"
                                   "  br i1 %c, label %x, label %x\n"
                                   "x:\n"
                                   "  %p = phi i32 [ 0, %entry ], "
                                   "[ 0, %entry ]\n"
                                   "  call void @llvm.donothing()\n"
                                   "  ret void"));
  // One block behind both sides: three instructions.
  EXPECT_TRUE(hasBenefit(TM.analyzedRecord("f"), 1 + 1));
}

TEST_F(BenefitTest, ASwitchAddsItsCasesAndWhatTheDefaultHasMore) {
  const std::string Head = "  switch i32 %n, label %d [ i32 1, label %x\n"
                           "    i32 2, label %y ]\n";
  EXPECT_TRUE(
      hasBenefit(Head + block("x", 4) + block("y", 6) + block("d", 9), 15 / 2));
  EXPECT_TRUE(
      hasBenefit(Head + block("x", 6) + block("y", 4) + block("d", 9), 15 / 2));
  EXPECT_TRUE(
      hasBenefit(Head + block("x", 4) + block("y", 6) + block("d", 3), 10 / 2));
  EXPECT_TRUE(
      hasBenefit(Head + block("x", 4) + block("y", 6) + block("d", 4), 10 / 2));
  EXPECT_TRUE(
      hasBenefit(Head + block("x", 4) + block("y", 6) + block("d", 6), 12 / 2));
}

TEST_F(BenefitTest, ASwitchWithoutCasesAddsNothing) {
  EXPECT_TRUE(hasBenefit("  switch i32 %n, label %d [ ]\n" + block("d", 9), 0));
}

TEST_F(BenefitTest, ADestinationOfSeveralCasesCountsForEach) {
  EXPECT_TRUE(hasBenefit("  switch i32 %n, label %d [ i32 1, label %x\n"
                         "    i32 2, label %x  i32 3, label %x ]\n" +
                             block("x", 4) + block("d", 2),
                         12 / 2));
  EXPECT_TRUE(hasBenefit("  switch i32 %n, label %x [ i32 1, label %x\n"
                         "    i32 2, label %y ]\n" +
                             block("x", 5) + block("y", 3),
                         (5 + 3 + (5 - 3)) / 2));
}

TEST_F(BenefitTest, AnEmptyRegionIsNoSmallestCase) {
  // Only a block that is still under construction has no instructions, so the
  // function gets its empty blocks by hand.
  struct {
    unsigned Cases[3], Default, DeadCode;
  } const Rows[] = {
      {{0, 5, 2}, 6, 7 + 4}, // Smallest: 0, then 5, then 2.
      {{5, 2, 0}, 6, 7},     // Reset to nothing at the end.
      {{5, 0, 4}, 6, 9 + 2}, // Reset, and 4 is new.
      {{0, 0, 0}, 6, 0},     {{3, 3, 4}, 0, 10},
  };
  for (const auto &Row : Rows) {
    TestModule TM(
        function("i32 %n", "  switch i32 %n, label %d [ i32 1, label %x\n"
                           "    i32 2, label %y  i32 3, label %z ]\n" +
                               block("x", std::max(1u, Row.Cases[0])) +
                               block("y", std::max(1u, Row.Cases[1])) +
                               block("z", std::max(1u, Row.Cases[2])) +
                               block("d", std::max(1u, Row.Default))));
    Function &F = TM.function("f");
    Costing Record = TM.record("f");
    for (BasicBlock &BB : F) {
      const StringRef Name = BB.getName();
      if ((Name == "x" && !Row.Cases[0]) || (Name == "y" && !Row.Cases[1]) ||
          (Name == "z" && !Row.Cases[2]) || (Name == "d" && !Row.Default))
        BB.getTerminator()->eraseFromParent();
    }
    EXPECT_TRUE(hasBenefit(Record, Row.DeadCode / 2));
    EXPECT_EQ(benefitByDefinition(F, *Record.DT), Row.DeadCode / 2);
  }
}

TEST_F(BenefitTest, UnreachableBlocksBelongToEveryRegion) {
  const std::string Branch =
      "  %c = trunc i32 %n to i1\n  br i1 %c, label %x, label %y\n";
  EXPECT_TRUE(
      hasBenefit(Branch + block("x", 7) + block("y", 3) + block("dead", 5),
                 (7 + 5) / 2 + 1));
  // Four instructions unreachable: x 2 + 4, y 3 + 4, default 8 + 4.
  EXPECT_TRUE(hasBenefit("  switch i32 %n, label %d [ i32 1, label %x\n"
                         "    i32 2, label %y ]\n" +
                             block("x", 2) + block("y", 3) + block("d", 8) +
                             "dead:\n  br label %deader\n" + block("deader", 3),
                         (6 + 7 + (12 - 6)) / 2));
}

TEST_F(BenefitTest, AnUnreachableSuccessorHasTheUnreachableBlocksOnly) {
  // The branch itself is unreachable: nothing that its sides lead to counts
  // for them but what is unreachable.
  EXPECT_TRUE(hasBenefit("entry:\n  %c = trunc i32 %n to i1\n"
                         "  br label %live\n"
                         "dead:\n  br i1 %c, label %x, label %y\n" +
                             block("x", 4) + block("y", 2) + block("live", 30),
                         (1 + 4 + 2) / 2 + 1));
  // One side comes back to a reachable block, whose region is its own and all
  // that is unreachable.
  EXPECT_TRUE(hasBenefit("entry:\n  %c = trunc i32 %n to i1\n"
                         "  br label %live\n"
                         "dead:\n  br i1 %c, label %live, label %y\n" +
                             block("y", 2) + block("live", 30),
                         (30 + 1 + 2) / 2 + 1));
}

TEST_F(BenefitTest, NothingIsWritten) {
  TestModule TM(function("i32 %n", "  %c = trunc i32 %n to i1\n"
                                   "  br i1 %c, label %x, label %y\n" +
                                       block("x", 7) + block("y", 3)));
  Costing Record = TM.analyzedRecord("f", 3);
  const std::string Before = TM.text();
  setDepth(77);
  EXPECT_TRUE(Record.estimateInlineBenefitAndCheckInlineFeasiblity());
  EXPECT_EQ(depth(), 77u);
  EXPECT_EQ(Record.NumOfInsts, 12u);
  EXPECT_EQ(Record.OptLevel, 3u);
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(BenefitTest, ASwitchOfTenThousandCases) {
  LLVMContext Context;
  Module M("m", Context);
  Function *F =
      Function::Create(FunctionType::get(Type::getVoidTy(Context),
                                         {Type::getInt32Ty(Context)}, false),
                       GlobalValue::ExternalLinkage, "f", M);
  IRBuilder<> Builder(BasicBlock::Create(Context, "", F));
  BasicBlock *Default = BasicBlock::Create(Context, "", F);
  constexpr unsigned NumOfCases = 10000;
  SwitchInst *Switch = Builder.CreateSwitch(F->getArg(0), Default, NumOfCases);
  Builder.SetInsertPoint(Default);
  Builder.CreateRetVoid();
  for (unsigned I = 0; I < NumOfCases; ++I) {
    BasicBlock *Case = BasicBlock::Create(Context, "", F);
    Switch->addCase(Builder.getInt32(I), Case);
    Builder.SetInsertPoint(Case);
    Builder.CreateFence(AtomicOrdering::SequentiallyConsistent);
    Builder.CreateRetVoid();
  }
  DominatorTree DT(*F);
  Costing Record(F, nullptr, &DT, 0);
  // Twice ten thousand, and the default has nothing more; half of it.
  EXPECT_TRUE(isEnough(Record, 100, NumOfCases - 1));
  EXPECT_FALSE(isEnough(Record, 100, NumOfCases));
}

//===----------------------------------------------------------------------===//
// Generated functions
//===----------------------------------------------------------------------===//

/// A function `f` of one argument with random control flow: branches and
/// switches on values of the argument and on others, loops, shared
/// destinations, unreachable blocks.  The same \p Seed makes the same function.
class GeneratedFunction {
public:
  explicit GeneratedFunction(unsigned Seed)
      : Random(Seed), M("generated", Context), Builder(Context) {
    auto *Slot = new GlobalVariable(M, Builder.getInt32Ty(), false,
                                    GlobalValue::ExternalLinkage, nullptr, "g");
    F = Function::Create(
        FunctionType::get(Builder.getVoidTy(), {Builder.getInt32Ty()}, false),
        GlobalValue::ExternalLinkage, "f", M);
    std::vector<BasicBlock *> Blocks;
    for (unsigned I = 0, E = 2 + pick(14); I < E; ++I)
      Blocks.push_back(BasicBlock::Create(Context, "", F));
    // Values of the entry block are available everywhere.
    std::vector<Value *> Everywhere{F->getArg(0)};
    for (BasicBlock *BB : Blocks) {
      Builder.SetInsertPoint(BB);
      std::vector<Value *> Values = Everywhere;
      for (unsigned I = 0, E = pick(7); I < E; ++I)
        Values.push_back(makeValue(Values, Slot));
      if (BB == Blocks.front())
        Everywhere = Values;
      makeTerminator(Blocks, Values);
    }
  }

  Function &function() { return *F; }

private:
  unsigned pick(unsigned Bound) { return Random() % Bound; }
  Value *pick(const std::vector<Value *> &Values) {
    return Values[pick(Values.size())];
  }
  /// Any block but the entry, which nothing may branch to.
  BasicBlock *pickTarget(const std::vector<BasicBlock *> &Blocks) {
    return Blocks[1 + pick(Blocks.size() - 1)];
  }

  /// An i32 that may or may not come from the argument.
  Value *makeValue(const std::vector<Value *> &Values, Value *Slot) {
    Type *Int = Builder.getInt32Ty();
    Value *Literal = Builder.getInt32(1 + pick(9));
    switch (pick(10)) {
    case 0:
      return Builder.CreateLoad(Int, Slot);
    case 1:
      return Builder.CreateAdd(pick(Values), pick(Values));
    case 2:
      return Builder.CreateFreeze(pick(Values));
    case 3:
      return Builder.CreateZExt(
          Builder.CreateICmpULT(pick(Values), pick(Values)), Int);
    case 4:
      return Builder.CreateSub(Literal, pick(Values));
    case 5:
      return Builder.CreateTrunc(
          Builder.CreateSExt(pick(Values), Builder.getInt64Ty()), Int);
    case 6:
      return Builder.CreateLoad(Int,
                                Builder.CreateGEP(Int, Slot, pick(Values)));
    default:
      return Builder.CreateMul(pick(Values), Literal);
    }
  }

  void makeTerminator(const std::vector<BasicBlock *> &Blocks,
                      const std::vector<Value *> &Values) {
    switch (pick(8)) {
    case 0:
      Builder.CreateRetVoid();
      break;
    case 1:
      Builder.CreateBr(pickTarget(Blocks));
      break;
    case 2:
    case 3: {
      SwitchInst *Switch =
          Builder.CreateSwitch(pick(Values), pickTarget(Blocks));
      for (unsigned I = 0, E = pick(6); I < E; ++I)
        Switch->addCase(Builder.getInt32(I), pickTarget(Blocks));
      break;
    }
    default:
      Builder.CreateCondBr(
          Builder.CreateICmpEQ(pick(Values), Builder.getInt32(pick(9))),
          pickTarget(Blocks), pickTarget(Blocks));
      break;
    }
  }

  std::mt19937 Random;
  LLVMContext Context;
  Module M;
  IRBuilder<> Builder;
  Function *F;
};

constexpr unsigned NumOfGenerated = 600;

TEST_F(FoldingTest, AgreesWithItsDefinition) {
  unsigned Folded = 0;
  for (unsigned Seed = 0; Seed < NumOfGenerated; ++Seed) {
    SCOPED_TRACE(Seed);
    GeneratedFunction Generated(Seed);
    Value *Argument = Generated.function().getArg(0);
    Folding Actual, Expected;
    Actual.walk(Argument);
    foldingByDefinition(Argument, Expected.Simplified, Expected.Decided,
                        Expected.Visited);
    ASSERT_EQ(Actual.Simplified.takeVector(), Expected.Simplified.takeVector());
    ASSERT_EQ(Actual.Decided.takeVector(), Expected.Decided.takeVector());
    auto Visited = Actual.Visited.takeVector();
    Folded += Visited.size() > 1;
    ASSERT_EQ(Visited, Expected.Visited.takeVector());
  }
  // The generator is of use only if most arguments are used.
  EXPECT_GT(Folded, NumOfGenerated / 2);
}

TEST_F(BenefitTest, AgreesWithItsDefinition) {
  unsigned WithUnreachable = 0, WithBenefit = 0;
  for (unsigned Seed = 0; Seed < NumOfGenerated; ++Seed) {
    SCOPED_TRACE(Seed);
    GeneratedFunction Generated(Seed);
    Function &F = Generated.function();
    ASSERT_FALSE(verifyFunction(F, &errs()));
    DominatorTree DT(F);
    WithUnreachable += any_of(
        F, [&](BasicBlock &BB) { return !DT.isReachableFromEntry(&BB); });
    const uint64_t Benefit = benefitByDefinition(F, DT);
    WithBenefit += Benefit != 0;

    Costing Record(&F, nullptr, &DT, 0);
    Record.analyzeFunction();
    const unsigned Size = Record.NumOfInsts;
    for (unsigned Ratio : {0u, 1u, 3u, 10u, 30u, 34u, 50u, 51u, 60u, 100u}) {
      const unsigned Divisor = Ratio == 0 ? 1 : 100 / Ratio;
      ASSERT_EQ(isEnough(Record, Ratio, Size), Benefit > Size / Divisor);
      // On both sides of the boundary.
      ASSERT_FALSE(isEnough(Record, Ratio, Benefit * Divisor));
      if (Benefit) {
        ASSERT_TRUE(isEnough(Record, Ratio, Benefit * Divisor - 1));
      }
    }
  }
  EXPECT_GT(WithUnreachable, NumOfGenerated / 10);
  EXPECT_GT(WithBenefit, NumOfGenerated / 2);
}

} // namespace
