//===- ScriptedEstimatorTest.cpp - What becomes of an estimate ------------===//
///
/// \file
/// How the costing treats every answer that a depth estimator can give, and the
/// default flow from there to the chain.
///
//===----------------------------------------------------------------------===//

#include "ScriptedHost.h"
#include "llvm/ADT/Triple.h"
#include "llvm/Analysis/AssumptionCache.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/Analysis/TargetLibraryInfo.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

constexpr const char *ThreeSites = R"(
define i32 @f(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  %c = call i32 @f(i32 %b)
  ret i32 %c
}
)";

/// The calls of \p F to itself, in layout order.
std::vector<CallInst *> selfCalls(Function &F) {
  std::vector<CallInst *> Calls;
  for (BasicBlock &BB : F)
    for (Instruction &I : BB)
      if (auto *Call = dyn_cast<CallInst>(&I))
        if (Call->getCalledFunction() == &F)
          Calls.push_back(Call);
  return Calls;
}

class ScriptedEstimatorTest : public ScriptedHostTest {
protected:
  ScriptedEstimatorTest() : TM(ThreeSites) {
    Script.CallSites = selfCalls;
    Script.DepthOf = [this](ScalarEvolution &, CallInst &Call) {
      return Depths.at(Call.getName().str());
    };
    setDepth(77);
  }

  ScalarEvolution &scalarEvolution() {
    return TM.scalarEvolution(TM.function("f"));
  }
  const SCEV *constant(uint64_t Value, unsigned Width = 32) {
    return scalarEvolution().getConstant(APInt(Width, Value));
  }
  const SCEV *variable() {
    return scalarEvolution().getSCEV(TM.function("f").getArg(0));
  }
  /// Gives each of the three call sites its pair.
  void setDepths(DepthPair A, DepthPair B, DepthPair C) {
    Depths = {{"a", A}, {"b", B}, {"c", C}};
  }
  void setDepths(DepthPair All) { setDepths(All, All, All); }

  const SCEV *estimate() {
    Script.Log.clear();
    Costing Record = TM.record("f");
    const SCEV *Depth = Record.estimateRecursionDepth();
    // Estimating assigns nothing.
    EXPECT_EQ(depth(), 77u);
    return Depth;
  }

  TestModule TM;
  std::map<std::string, DepthPair> Depths;
};

TEST_F(ScriptedEstimatorTest, NoEstimateIsPossible) {
  Script.CanEstimate = false;
  setDepths({constant(5), constant(5)});
  EXPECT_EQ(estimate(), nullptr);
  EXPECT_THAT(Script.Log, ElementsAre("can f"));
}

TEST_F(ScriptedEstimatorTest, NoCallSites) {
  Script.CallSites = nullptr;
  EXPECT_EQ(estimate(), nullptr);
  EXPECT_THAT(Script.Log, ElementsAre("can f"));
}

TEST_F(ScriptedEstimatorTest, OneSite) {
  Script.CallSites = [](Function &F) {
    return std::vector<CallInst *>{selfCalls(F)[1]};
  };
  setDepths({}, {constant(5), constant(5)}, {});
  EXPECT_EQ(estimate(), constant(5));
  EXPECT_THAT(Script.Log, ElementsAre("can f", "site b"));
}

TEST_F(ScriptedEstimatorTest, AllSitesAgree) {
  setDepths({constant(5), constant(5)});
  EXPECT_EQ(estimate(), constant(5));
  EXPECT_THAT(Script.Log, ElementsAre("can f", "site a", "site b", "site c"));
}

TEST_F(ScriptedEstimatorTest, ZeroIsADepth) {
  setDepths({constant(0), constant(0)});
  EXPECT_EQ(estimate(), constant(0));
}

TEST_F(ScriptedEstimatorTest, TheEstimatorGetsTheRecordsAnalyses) {
  setDepths({constant(5), constant(5)});
  estimate();
  EXPECT_EQ(Script.SE, &scalarEvolution());
  EXPECT_EQ(Script.DT, &TM.dominatorTree(TM.function("f")));

  Costing WithoutTree(&TM.function("f"), &scalarEvolution(), nullptr, 0);
  EXPECT_EQ(WithoutTree.estimateRecursionDepth(), constant(5));
  EXPECT_EQ(Script.DT, nullptr);
}

TEST_F(ScriptedEstimatorTest, TheFirstFailingSiteEndsTheLoop) {
  const SCEV *Five = constant(5), *Six = constant(6);
  const DepthPair Good{Five, Five};
  const DepthPair Failures[] = {{nullptr, Five},    {Five, nullptr},
                                {nullptr, nullptr}, {variable(), Five},
                                {Five, variable()}, {variable(), variable()},
                                {Five, Six},        {Six, Five}};
  for (const DepthPair &Bad : Failures) {
    setDepths(Bad, Good, Good);
    EXPECT_EQ(estimate(), nullptr);
    EXPECT_THAT(Script.Log, ElementsAre("can f", "site a"));
    setDepths(Good, Bad, Good);
    EXPECT_EQ(estimate(), nullptr);
    EXPECT_THAT(Script.Log, ElementsAre("can f", "site a", "site b"));
    setDepths(Good, Good, Bad);
    EXPECT_EQ(estimate(), nullptr);
    EXPECT_THAT(Script.Log, ElementsAre("can f", "site a", "site b", "site c"));
  }
}

TEST_F(ScriptedEstimatorTest, SitesThatDisagree) {
  const DepthPair Five{constant(5), constant(5)}, Six{constant(6), constant(6)};
  setDepths(Five, Six, Five);
  EXPECT_EQ(estimate(), nullptr);
  EXPECT_THAT(Script.Log, ElementsAre("can f", "site a", "site b"));
  setDepths(Five, Five, Six);
  EXPECT_EQ(estimate(), nullptr);
  setDepths(Six, Five, Five);
  EXPECT_EQ(estimate(), nullptr);
}

TEST_F(ScriptedEstimatorTest, ConstantsAreComparedByValue) {
  // One ScalarEvolution makes equal constants the same object.  Another one's
  // are different objects.
  Function &F = TM.function("f");
  TargetLibraryInfoImpl Libraries(Triple(TM.module().getTargetTriple()));
  TargetLibraryInfo TLI(Libraries);
  AssumptionCache AC(F);
  DominatorTree DT(F);
  LoopInfo LI(DT);
  ScalarEvolution Other(F, TLI, AC, DT, LI);
  const SCEV *Ours = constant(5);
  const SCEV *Theirs = Other.getConstant(APInt(32, 5));
  const SCEV *TheirSix = Other.getConstant(APInt(32, 6));
  ASSERT_NE(Ours, Theirs);
  setDepths({Ours, Theirs});
  EXPECT_EQ(estimate(), Ours);
  setDepths({Theirs, Ours}, {Ours, Ours}, {Ours, Theirs});
  EXPECT_EQ(estimate(), Theirs);
  setDepths({Ours, TheirSix});
  EXPECT_EQ(estimate(), nullptr);
  setDepths({Ours, Ours}, {TheirSix, TheirSix}, {Ours, Ours});
  EXPECT_EQ(estimate(), nullptr);
}

TEST_F(ScriptedEstimatorTest, ConstantsOfEveryWidth) {
  for (unsigned Width : {1u, 8u, 32u, 64u, 65u, 128u, 200u}) {
    SCOPED_TRACE(Width);
    const SCEV *One = constant(1, Width), *Zero = constant(0, Width);
    setDepths({One, One});
    EXPECT_EQ(estimate(), One);
    setDepths({One, Zero});
    EXPECT_EQ(estimate(), nullptr);
    setDepths({One, One}, {Zero, Zero}, {One, One});
    EXPECT_EQ(estimate(), nullptr);
  }
}

TEST_F(ScriptedEstimatorTest, ADifferenceAboveTheLowestWordIsADifference) {
  const SCEV *Low = constant(5, 128);
  const SCEV *High =
      scalarEvolution().getConstant(APInt(128, {uint64_t(5), uint64_t(1)}));
  setDepths({Low, High});
  EXPECT_EQ(estimate(), nullptr);
  setDepths({Low, Low}, {High, High}, {Low, Low});
  EXPECT_EQ(estimate(), nullptr);
  setDepths({High, High});
  EXPECT_EQ(estimate(), High);
}

//===----------------------------------------------------------------------===//
// The default flow.  `f` is a countdown with one outside caller: 6
// instructions, of which two fold (icmp, sub) and the branch's larger region
// has 3 (sub, call, ret), so the benefit is 3.  Ten per cent of 6 is 0.
//===----------------------------------------------------------------------===//

class DefaultFlowTest : public ScriptedHostTest {
protected:
  DefaultFlowTest() {
    Script.CallSites = selfCalls;
    setConstantDepth(APInt(32, 3));
    setDepth(77);
  }

  void setConstantDepth(APInt Depth) {
    Script.DepthOf = [Depth](ScalarEvolution &SE, CallInst &) {
      const SCEV *Constant = SE.getConstant(Depth);
      return DepthPair{Constant, Constant};
    };
  }

  static std::string enteredCountdown() {
    return countdown("f") + caller("main", "f");
  }

  static bool isProfitable(const std::string &Assembly) {
    TestModule TM(Assembly);
    return TM.analyzedRecord("f", 0).isProfitableToInline();
  }
};

TEST_F(DefaultFlowTest, AcceptsWithTheEstimatedDepth) {
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 3u);
}

TEST_F(DefaultFlowTest, NeedsOneOutsideCallBeforeItAsksForADepth) {
  for (const std::string &Assembly :
       {countdown("f"), enteredCountdown() + caller("other", "f"),
        "@g = global ptr @f\n" + enteredCountdown()}) {
    EXPECT_FALSE(isProfitable(Assembly));
    EXPECT_THAT(Script.Log, IsEmpty());
    EXPECT_EQ(depth(), 77u);
  }
}

TEST_F(DefaultFlowTest, NeedsADepth) {
  Script.CanEstimate = false;
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 77u);
}

TEST_F(DefaultFlowTest, TheThresholdIsIncluded) {
  setConstantDepth(APInt(32, 7));
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 7u);
  setDepth(77);
  setConstantDepth(APInt(32, 8));
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 77u);

  ScopedOption<unsigned> Threshold("default-recursion-depth-threshold", 8);
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 8u);
}

TEST_F(DefaultFlowTest, TheDepthIsUnsigned) {
  setConstantDepth(APInt(32, -1, true));
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  // Seven in three bits is minus one, and still seven.
  setConstantDepth(APInt(3, 7));
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 7u);
}

TEST_F(DefaultFlowTest, TheDepthIsTheLowThirtyTwoBits) {
  setConstantDepth(APInt(64, 0x900000005));
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 5u);
  setConstantDepth(APInt(64, 0x500000009));
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  setConstantDepth(APInt(128, {uint64_t(0x100000006), ~uint64_t(0)}));
  EXPECT_TRUE(isProfitable(enteredCountdown()));
  EXPECT_EQ(depth(), 6u);
}

TEST_F(DefaultFlowTest, NeedsEnoughBenefit) {
  // All of the 6 instructions against a benefit of 3.
  ScopedOption<unsigned> Ratio("inline-recursion-profitablity", 100);
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  EXPECT_THAT(Script.Log, ElementsAre("can f", "site r"));
  EXPECT_EQ(depth(), 77u);
  // Half of them is 3, which is not enough either; a third is.
  ScopedOption<unsigned> Half("inline-recursion-profitablity", 50);
  EXPECT_FALSE(isProfitable(enteredCountdown()));
  ScopedOption<unsigned> Third("inline-recursion-profitablity", 33);
  EXPECT_TRUE(isProfitable(enteredCountdown()));
}

TEST_F(DefaultFlowTest, NeedsExactlyOneArgument) {
  EXPECT_FALSE(isProfitable(R"(
define void @f(i32 %n, i32 %m) {
  %a = add i32 %n, 1
  %b = add i32 %a, 1
  call void @f(i32 %b, i32 %m)
  ret void
}
define void @main() {
  call void @f(i32 1, i32 2)
  ret void
})"));
  EXPECT_EQ(depth(), 77u);
}

TEST_F(DefaultFlowTest, OnlyLevelZeroAsksForADepth) {
  for (unsigned Level : {1u, 2u, 3u, 4u}) {
    TestModule TM(enteredCountdown());
    EXPECT_TRUE(TM.analyzedRecord("f", Level).isProfitableToInline());
  }
  EXPECT_THAT(Script.Log, IsEmpty());
}

TEST_F(DefaultFlowTest, BuildsAChainOfTheEstimatedDepth) {
  TestModule TM(enteredCountdown());
  LoggingDriver Driver(TM);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(Driver->OptLevel, 0u);
  EXPECT_EQ(Driver->CloneCount, 3u);
  const std::vector<std::string> Names = TM.functionNames();
  ASSERT_THAT(Names, ElementsAre("f", "main", "f.recurse.clone",
                                 StartsWith("f.recurse.clone."),
                                 StartsWith("f.recurse.clone.")));
  for (auto [Caller, Callee] :
       {std::pair(1, 2), std::pair(2, 3), std::pair(3, 4), std::pair(4, 0),
        std::pair(0, 0)})
    EXPECT_THAT(TM.calleesOf(Names[Caller]), ElementsAre(Names[Callee]));
  for (unsigned I : {2, 3, 4})
    EXPECT_TRUE(TM.function(Names[I]).hasFnAttribute(Attribute::AlwaysInline));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(DefaultFlowTest, ADepthOfZeroIsAcceptedAndCopiesNothing) {
  setConstantDepth(APInt(32, 0));
  TestModule TM(enteredCountdown());
  const std::string Before = TM.text();
  LoggingDriver Driver(TM);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(Driver->CloneCount, 0u);
  EXPECT_EQ(TM.text(), Before);

  // Not even an exhausted budget is in its way.
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 0);
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  EXPECT_EQ(depth(), 0u);
}

TEST_F(DefaultFlowTest, ADepthOfZeroInvalidatesAllAnalyses) {
  setConstantDepth(APInt(32, 0));
  TestModule TM(enteredCountdown());
  const PreservedAnalyses Preserved =
      InlineRecursionPass().run(TM.module(), TM.analyses());
  EXPECT_FALSE(Preserved.areAllPreserved());
  EXPECT_FALSE(Preserved.getChecker<DominatorTreeAnalysis>().preserved());
}

TEST_F(DefaultFlowTest, NothingAcceptedPreservesAllAnalyses) {
  Script.CanEstimate = false;
  TestModule TM(enteredCountdown());
  EXPECT_TRUE(
      InlineRecursionPass().run(TM.module(), TM.analyses()).areAllPreserved());
  EXPECT_THAT(Script.Log, ElementsAre("can f"));
}

} // namespace
