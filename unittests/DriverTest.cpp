//===- DriverTest.cpp - The walk over a module ----------------------------===//
///
/// \file
/// Filter, order of questions, budget and levels of the driver.  Levels 2 to 4
/// are used throughout: they accept or refuse by counts alone.
///
//===----------------------------------------------------------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

constexpr const char *CloneMark = "llvm.recurse.clone";
constexpr const char *Eligible =
    "specialize-inline-recursion-function-eligible";

class DriverTest : public PassTest {};

TEST_F(DriverTest, EmptyModuleIsUnchanged) {
  TestModule TM;
  LoggingDriver Driver(TM, 3);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_THAT(Driver.log(), IsEmpty());
}

TEST_F(DriverTest, DeclarationsResetTheDepthAndNothingElse) {
  TestModule TM("declare i32 @f(i32)\ndeclare void @g()\n");
  LoggingDriver Driver(TM, 3);
  setDepth(5);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_EQ(depth(), 1u);
  EXPECT_THAT(Driver.log(), IsEmpty());
}

TEST_F(DriverTest, RefusedFunctionsResetTheDepthToo) {
  TestModule TM(countdown("f", "norecurse"));
  LoggingDriver Driver(TM, 3);
  setDepth(5);
  EXPECT_FALSE(Driver->inlineRecursionFunction(&TM.function("f")));
  EXPECT_EQ(depth(), 1u);
}

TEST_F(DriverTest, AsksForScalarEvolutionThenForTheDominatorTree) {
  TestModule TM("declare i32 @declared(i32)\n" + countdown("f") +
                leaf("plain") + countdown("g"));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Driver.log(), ElementsAre("SE f", "DT f", "SE plain", "DT plain",
                                        "SE g", "DT g"));
}

TEST_F(DriverTest, AGatedFunctionIsNotCosted) {
  TestModule TM(remainder("f", 2));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Driver.log(), ElementsAre("SE f"));
  EXPECT_TRUE(Driver->SpecializeSeen);
}

TEST_F(DriverTest, AFunctionThatTheGateRefusesIsCosted) {
  TestModule TM(remainder("f", 16));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Driver.log(), ElementsAre("SE f", "SE f", "DT f"));
  EXPECT_FALSE(Driver->SpecializeSeen);
  EXPECT_FALSE(TM.function("f").hasFnAttribute(Eligible));
}

TEST_F(DriverTest, FilteredFunctionsAreNotShownToTheGate) {
  for (const char *Attributes :
       {"optnone noinline", "norecurse", "\"llvm.recurse.clone\""}) {
    SCOPED_TRACE(Attributes);
    TestModule TM(remainder("f", 2));
    Function &F = TM.function("f");
    if (StringRef(Attributes).startswith("optnone")) {
      F.addFnAttr(Attribute::OptimizeNone);
      F.addFnAttr(Attribute::NoInline);
    } else if (StringRef(Attributes) == "norecurse") {
      F.addFnAttr(Attribute::NoRecurse);
    } else {
      F.addFnAttr(CloneMark);
    }
    const std::string Before = TM.text();
    LoggingDriver Driver(TM, 3);
    EXPECT_FALSE(Driver->processModule(TM.module()));
    EXPECT_THAT(Driver.log(), IsEmpty());
    EXPECT_FALSE(F.hasFnAttribute(Eligible));
    EXPECT_EQ(TM.text(), Before);
  }
}

TEST_F(DriverTest, IsLegalIsTheFilterWithoutSideEffects) {
  TestModule TM("declare i32 @declared(i32)\n" +
                countdown("marked", "\"llvm.recurse.clone\"") +
                countdown("unoptimised", "optnone noinline") +
                countdown("norecurse", "norecurse") + countdown("plain") +
                leaf("leaf"));
  LoggingDriver Driver(TM, 3);
  const std::string Before = TM.text();
  setDepth(5);
  EXPECT_FALSE(Driver->isLegalToInlineRecursion(&TM.function("declared")));
  EXPECT_FALSE(Driver->isLegalToInlineRecursion(&TM.function("marked")));
  EXPECT_FALSE(Driver->isLegalToInlineRecursion(&TM.function("unoptimised")));
  EXPECT_FALSE(Driver->isLegalToInlineRecursion(&TM.function("norecurse")));
  EXPECT_TRUE(Driver->isLegalToInlineRecursion(&TM.function("plain")));
  EXPECT_TRUE(Driver->isLegalToInlineRecursion(&TM.function("leaf")));
  EXPECT_EQ(depth(), 5u);
  EXPECT_EQ(TM.text(), Before);
  EXPECT_THAT(Driver.log(), IsEmpty());
}

TEST_F(DriverTest, CopiesAreMetByTheWalkAndRefused) {
  TestModule TM(countdown("f") + caller("main", "f"));
  LoggingDriver Driver(TM, 4);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  // Level 4 makes ten; a copy that was costed would be copied again.
  EXPECT_EQ(TM.module().size(), 12u);
  EXPECT_THAT(Driver.log(), ElementsAre("SE f", "DT f", "SE main", "DT main"));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(DriverTest, AChainedFunctionIsRefusedTheSecondTime) {
  TestModule TM(countdown("f") + caller("main", "f"));
  LoggingDriver First(TM, 3), Second(TM, 3);
  EXPECT_TRUE(First->processModule(TM.module()));
  const std::string Chained = TM.text();
  EXPECT_FALSE(Second->processModule(TM.module()));
  EXPECT_EQ(TM.text(), Chained);
}

TEST_F(DriverTest, FunctionsWithoutExactlyOneSelfCallAreRefused) {
  TestModule TM(leaf("none") + R"(
define i32 @twice(i32 %n) {
  %a = call i32 @twice(i32 %n)
  %b = call i32 @twice(i32 %a)
  ret i32 %b
})");
  LoggingDriver Driver(TM, 3);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_EQ(TM.module().size(), 2u);
}

TEST_F(DriverTest, ADepthGivenByTheUserHasNoEffect) {
  TestModule TM(countdown("f") + caller("main", "f"));
  LoggingDriver Driver(TM, 3);
  setDepth(5);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(TM.functionNames(), ElementsAre("f", "main", "f.recurse.clone"));
  EXPECT_EQ(depth(), 1u);
}

TEST_F(DriverTest, TheLastFunctionsDepthStaysInTheOption) {
  // The last function that the walk meets is the last copy: refused, depth 1.
  TestModule TM(countdown("f") + caller("main", "f"));
  LoggingDriver Driver(TM, 4);
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  EXPECT_EQ(depth(), 10u);
  EXPECT_FALSE(Driver->inlineRecursionFunction(&TM.function("main")));
  EXPECT_EQ(depth(), 1u);
}

TEST_F(DriverTest, TheDepthOfOneFunctionDoesNotReachTheNext) {
  TestModule TM(remainder("ring", 4) + countdown("chain"));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(TM.functionNames(),
              ElementsAre("ring", "chain", "ring.recurse.clone",
                          StartsWith("ring.recurse.clone."),
                          StartsWith("ring.recurse.clone."),
                          StartsWith("ring.recurse.clone."),
                          "chain.recurse.clone"));
  EXPECT_EQ(Driver->CloneCount, 5u);
}

std::string countdowns(unsigned Count) {
  std::string Text;
  for (unsigned I = 0; I < Count; ++I)
    Text += countdown("f" + std::to_string(I));
  return Text;
}

TEST_F(DriverTest, TheBudgetGrantsTwentyFiveFunctionsOfDepthOne) {
  TestModule TM(countdowns(26));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(TM.module().size(), 26u + 25u);
  EXPECT_TRUE(TM.function("f24").hasFnAttribute(CloneMark));
  EXPECT_FALSE(TM.function("f25").hasFnAttribute(CloneMark));
  EXPECT_EQ(Driver->CloneCount, 25u);
}

TEST_F(DriverTest, ADepthOfTenTakesTenFromTheBudget) {
  TestModule TM(countdowns(3));
  LoggingDriver Driver(TM, 4);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(TM.module().size(), 3u + 20u);
  EXPECT_EQ(Driver->CloneCount, 20u);
}

TEST_F(DriverTest, TheBudgetMayBeSpentToTheLast) {
  for (unsigned Limit : {19u, 20u}) {
    ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", Limit);
    TestModule TM(countdowns(2));
    LoggingDriver Driver(TM, 4);
    EXPECT_TRUE(Driver->processModule(TM.module()));
    EXPECT_EQ(Driver->CloneCount, Limit == 20 ? 20u : 10u);
    EXPECT_EQ(TM.module().size(), 2u + Driver->CloneCount);
  }
}

TEST_F(DriverTest, ABudgetOfZeroRefusesEveryDepthAboveZero) {
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 0);
  TestModule TM(countdown("f"));
  const std::string Before = TM.text();
  LoggingDriver Driver(TM, 3);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_EQ(TM.text(), Before);
  EXPECT_EQ(Driver->CloneCount, 0u);
}

TEST_F(DriverTest, ARefusalCostsNothingAndKeepsTheGatesMarks) {
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 12);
  TestModule TM(remainder("first", 8) + remainder("refused", 8) +
                remainder("last", 4));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(Driver->CloneCount, 12u);
  EXPECT_EQ(TM.module().size(), 3u + 12u);
  EXPECT_TRUE(TM.function("refused").hasFnAttribute(Eligible));
  EXPECT_FALSE(TM.function("refused").hasFnAttribute(CloneMark));
  EXPECT_TRUE(TM.function("last").hasFnAttribute(CloneMark));
}

TEST_F(DriverTest, ARefusedRingIsStillSeen) {
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 7);
  TestModule TM(remainder("f", 8));
  LoggingDriver Driver(TM, 3);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_TRUE(Driver->SpecializeSeen);
  EXPECT_EQ(depth(), 8u);
}

TEST_F(DriverTest, TheBudgetIsUnsignedAndThirtyTwoBitsWide) {
  TestModule TM(countdown("f"));
  LoggingDriver Driver(TM, 3);
  Driver->CloneCount = 4294967295u;
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  EXPECT_EQ(Driver->CloneCount, 0u);

  TestModule Other(countdown("f"));
  LoggingDriver Full(Other, 3);
  Full->CloneCount = 4294967294u;
  EXPECT_FALSE(Full->inlineRecursionFunction(&Other.function("f")));
  EXPECT_EQ(Full->CloneCount, 4294967294u);
}

TEST_F(DriverTest, EveryModuleStartsWithAFreshBudget) {
  TestModule TM(leaf("f"));
  LoggingDriver Driver(TM, 3);
  Driver->CloneCount = 24;
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_EQ(Driver->CloneCount, 0u);
}

TEST_F(DriverTest, ResolvesTheLevel) {
  struct {
    unsigned Given;
    int Option;
    unsigned Resolved;
  } const Rows[] = {{0, 0, 0}, {0, 3, 3}, {2, 0, 2},
                    {2, 3, 2}, {9, 3, 9}, {0, -1, 4294967295u}};
  for (const auto &Row : Rows) {
    ScopedOption<int> Level("inline-recursion-opt-level", Row.Option);
    // The level is resolved whether or not there is anything to look at.
    TestModule Empty;
    LoggingDriver Driver(Empty, Row.Given);
    EXPECT_FALSE(Driver->processModule(Empty.module()));
    EXPECT_EQ(Driver->OptLevel, Row.Resolved)
        << Row.Given << " with option " << Row.Option;
  }
}

TEST_F(DriverTest, SpecializeSeenIsNeverCleared) {
  TestModule TM(countdown("f"));
  LoggingDriver Driver(TM, 3);
  Driver->SpecializeSeen = true;
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_TRUE(Driver->SpecializeSeen);
}

TEST_F(DriverTest, TheSpecialDepthLimitIsTheRecords) {
  // The option is the pass entries' business; the driver has its own copy.
  ScopedOption<unsigned> Option("special-inline-recursion-depth", 10);
  TestModule TM(remainder("f", 8));
  LoggingDriver Driver(TM, 2, /*SpecialDepthLimit=*/7);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_FALSE(Driver->SpecializeSeen);
  EXPECT_EQ(TM.module().size(), 2u);
}

TEST_F(DriverTest, AnInvalidLevelIsReportedForEveryFunctionThatIsDecided) {
  TestModule TM(countdown("f") + leaf("leaf") + countdown("g"));
  LoggingDriver Driver(TM, 4294967295u);
  bool Changed = false;
  EXPECT_EQ(
      debugOutputOf([&] { Changed = Driver->processModule(TM.module()); }),
      "Invalid Inline Recursion Opt Level: -1\n"
      "Setting to default Inline Recursion Opt Level: 2\n"
      "Invalid Inline Recursion Opt Level: -1\n"
      "Setting to default Inline Recursion Opt Level: 2\n");
  EXPECT_TRUE(Changed);
  EXPECT_EQ(Driver->OptLevel, 4294967295u);
}

TEST_F(DriverTest, ValidLevelsAreSilent) {
  for (unsigned Level : {1u, 2u, 3u, 4u}) {
    TestModule TM(countdown("f"));
    LoggingDriver Driver(TM, Level);
    EXPECT_EQ(debugOutputOf([&] { Driver->processModule(TM.module()); }), "");
  }
}

} // namespace
