//===- ProfitabilityTest.cpp - The rules of the levels --------------------===//
///
/// \file
/// The fixed rules, on records that are filled by hand.  The rule of level 0
/// asks the depth estimator and is tested with a scripted one.
///
//===----------------------------------------------------------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;

namespace {

class ProfitabilityTest : public PassTest {
protected:
  ProfitabilityTest() : TM(countdown("f") + leaf("a") + leaf("b")) {
    setDepth(5);
  }

  /// A recursive function with one self-call and these counts.
  Costing counted(unsigned OptLevel, unsigned Insts, unsigned Branches,
                  unsigned Calls) {
    Costing Record = TM.record("f", OptLevel);
    Record.IsRecursiveFunction = true;
    Record.NumOfRecursiveCalls = 1;
    Record.NumOfInsts = Insts;
    Record.NumOfBranches = Branches;
    Record.NumOfFunctionCalls = Calls;
    return Record;
  }
  bool isProfitable(unsigned OptLevel, unsigned Insts, unsigned Branches,
                    unsigned Calls) {
    Costing Record = counted(OptLevel, Insts, Branches, Calls);
    return Record.isProfitableToInline();
  }

  /// Level 4 with \p InA and \p InB call sites in two callers, of \p InModule.
  bool isProfitableAtFour(unsigned InModule, unsigned InA, unsigned InB) {
    Costing Record = counted(4, 4294967295u, 4294967295u, 4294967295u);
    Record.NumOfCandidateFunCallSiteInMod = InModule;
    Record.NumOfCandidateFunCallSite[&TM.function("a")] = InA;
    Record.NumOfCandidateFunCallSite[&TM.function("b")] = InB;
    return Record.isProfitableToInline();
  }

  TestModule TM;
};

TEST_F(ProfitabilityTest, LevelOneTakesSmallBodiesWithOneCall) {
  EXPECT_TRUE(isProfitable(1, 20, 5, 1));
  EXPECT_FALSE(isProfitable(1, 21, 5, 1));
  EXPECT_FALSE(isProfitable(1, 20, 6, 1));
  EXPECT_FALSE(isProfitable(1, 20, 5, 0));
  EXPECT_FALSE(isProfitable(1, 20, 5, 2));
  EXPECT_TRUE(isProfitable(1, 0, 0, 1));
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, LevelTwoTakesMediumBodies) {
  EXPECT_TRUE(isProfitable(2, 50, 10, 4));
  EXPECT_FALSE(isProfitable(2, 51, 10, 4));
  EXPECT_FALSE(isProfitable(2, 50, 11, 4));
  EXPECT_FALSE(isProfitable(2, 50, 10, 5));
  EXPECT_TRUE(isProfitable(2, 50, 10, 0));
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, CountsAreComparedUnsigned) {
  EXPECT_FALSE(isProfitable(1, 4294967295u, 5, 1));
  EXPECT_FALSE(isProfitable(1, 20, 4294967295u, 1));
  EXPECT_FALSE(isProfitable(2, 4294967295u, 10, 4));
  EXPECT_FALSE(isProfitable(2, 50, 4294967295u, 4));
  EXPECT_FALSE(isProfitable(2, 50, 10, 4294967295u));
  EXPECT_FALSE(isProfitableAtFour(4294967295u, 0, 0));
  EXPECT_FALSE(isProfitableAtFour(0, 4294967295u, 0));
}

TEST_F(ProfitabilityTest, LevelThreeTakesEverything) {
  EXPECT_TRUE(isProfitable(3, 0, 0, 0));
  EXPECT_TRUE(isProfitable(3, 4294967295u, 4294967295u, 4294967295u));
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, LevelFourGoesUpToBothLimits) {
  EXPECT_TRUE(isProfitableAtFour(2, 1, 1));
  EXPECT_EQ(depth(), 10u);
}

TEST_F(ProfitabilityTest, LevelFourRefusesAModuleOverItsLimit) {
  EXPECT_FALSE(isProfitableAtFour(3, 1, 1));
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, LevelFourRefusesAnyCallerOverItsLimit) {
  EXPECT_FALSE(isProfitableAtFour(2, 2, 1));
  EXPECT_FALSE(isProfitableAtFour(2, 1, 2));
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, LevelFourReadsItsLimitsFromTheOptions) {
  ScopedOption<unsigned> PerFunction("inline-recursion-max-callsite-fun", 3);
  ScopedOption<unsigned> InModule("inline-recursion-max-callsite-mod", 6);
  EXPECT_FALSE(isProfitableAtFour(7, 3, 3));
  EXPECT_FALSE(isProfitableAtFour(6, 4, 2));
  EXPECT_FALSE(isProfitableAtFour(6, 2, 4));
  EXPECT_EQ(depth(), 5u);
  EXPECT_TRUE(isProfitableAtFour(6, 3, 3));
  EXPECT_EQ(depth(), 10u);
}

TEST_F(ProfitabilityTest, LevelFourAcceptsAnEmptyList) {
  ScopedOption<unsigned> PerFunction("inline-recursion-max-callsite-fun", 0);
  ScopedOption<unsigned> InModule("inline-recursion-max-callsite-mod", 0);
  Costing Record = counted(4, 0, 0, 0);
  EXPECT_TRUE(Record.isProfitableToInline());
  EXPECT_EQ(depth(), 10u);
}

TEST_F(ProfitabilityTest, InvalidLevelsAreReportedAndCostedLikeLevelTwo) {
  const std::pair<unsigned, const char *> Levels[] = {
      {5, "5"}, {7, "7"}, {2147483648u, "-2147483648"}, {4294967295u, "-1"}};
  for (const auto &[Level, Text] : Levels) {
    SCOPED_TRACE(Text);
    const std::string Warning =
        std::string("Invalid Inline Recursion Opt Level: ") + Text +
        "\nSetting to default Inline Recursion Opt Level: 2\n";
    Costing Good = counted(Level, 50, 10, 4);
    bool Answer = false;
    EXPECT_EQ(debugOutputOf([&] { Answer = Good.isProfitableToInline(); }),
              Warning);
    EXPECT_TRUE(Answer);
    EXPECT_EQ(Good.OptLevel, 2u);

    Costing Large = counted(Level, 51, 10, 4);
    EXPECT_EQ(debugOutputOf([&] { Answer = Large.isProfitableToInline(); }),
              Warning);
    EXPECT_FALSE(Answer);
    EXPECT_EQ(Large.OptLevel, 2u);

    // The record is corrected, so the same record is not reported again.
    EXPECT_EQ(debugOutputOf([&] { Answer = Good.isProfitableToInline(); }), "");
    EXPECT_TRUE(Answer);
  }
  EXPECT_EQ(depth(), 5u);
}

TEST_F(ProfitabilityTest, ValidLevelsStayInTheRecord) {
  for (unsigned Level : {0u, 1u, 2u, 3u, 4u}) {
    Costing Record = counted(Level, 10, 1, 1);
    EXPECT_EQ(debugOutputOf([&] { Record.isProfitableToInline(); }), "");
    EXPECT_EQ(Record.OptLevel, Level);
  }
}

TEST_F(ProfitabilityTest, OneSelfCallIsRequiredAtEveryLevel) {
  for (unsigned Level : {0u, 1u, 2u, 3u, 4u, 5u, 7u, 4294967295u}) {
    SCOPED_TRACE(Level);
    Costing NotRecursive = counted(Level, 1, 1, 1);
    NotRecursive.IsRecursiveFunction = false;
    Costing None = counted(Level, 1, 1, 1);
    None.NumOfRecursiveCalls = 0;
    Costing Two = counted(Level, 1, 1, 1);
    Two.NumOfRecursiveCalls = 2;
    for (Costing *Record : {&NotRecursive, &None, &Two}) {
      bool Answer = true;
      EXPECT_EQ(debugOutputOf([&] { Answer = Record->isProfitableToInline(); }),
                "");
      EXPECT_FALSE(Answer);
      EXPECT_EQ(Record->OptLevel, Level);
    }
  }
  EXPECT_EQ(depth(), 5u);
}

} // namespace
