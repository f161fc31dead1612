//===- GrowthBudgetTest.cpp - How growth is shared out --------------------===//

#include "plugin/automatic/GrowthBudget.h"
#include "gtest/gtest.h"
#include <algorithm>
#include <random>
#include <vector>

using namespace llvm::inlinerecursion;

namespace {

/// What functions get that take all of their share that they asked for.
std::vector<uint64_t> shareOut(uint64_t Limit, std::vector<unsigned> Demands) {
  GrowthBudget Budget(Limit, Demands);
  std::vector<uint64_t> Growths;
  for (unsigned Demand : Demands) {
    Growths.push_back(std::min<uint64_t>(Demand, Budget.getShare()));
    Budget.take(Demand, Growths.back());
  }
  return Growths;
}

TEST(GrowthBudgetTest, WhatFitsIsGranted) {
  EXPECT_EQ(shareOut(100, {60, 0, 40}), (std::vector<uint64_t>{60, 0, 40}));
}

TEST(GrowthBudgetTest, EqualDemandsGetEqualParts) {
  EXPECT_EQ(shareOut(90, {60, 60, 60}), (std::vector<uint64_t>{30, 30, 30}));
}

TEST(GrowthBudgetTest, SmallDemandsAreMetAndLargeOnesShareTheRest) {
  EXPECT_EQ(shareOut(100, {900, 10, 50, 900}),
            (std::vector<uint64_t>{30, 10, 30, 30}));
}

TEST(GrowthBudgetTest, OneFunctionMayHaveAll) {
  EXPECT_EQ(shareOut(100, {900}), (std::vector<uint64_t>{100}));
  EXPECT_EQ(GrowthBudget(100, {}).getShare(), 100u);
}

TEST(GrowthBudgetTest, NothingIsSharedOutAsNothing) {
  EXPECT_EQ(shareOut(0, {5, 0}), (std::vector<uint64_t>{0, 0}));
}

TEST(GrowthBudgetTest, WhatIsLeftOfAShareIsForTheNext) {
  GrowthBudget Budget(90, {60, 60, 60});
  Budget.take(60, 10);
  EXPECT_EQ(Budget.getShare(), 50u);
  Budget.take(60, 50);
  EXPECT_EQ(Budget.getShare(), 30u);
}

TEST(GrowthBudgetTest, SharesThatAreTooSmallAddUp) {
  GrowthBudget Budget(40, {30, 30, 30, 30});
  Budget.take(30, 0);
  Budget.take(30, 0);
  EXPECT_EQ(Budget.getShare(), 30u);
}

TEST(GrowthBudgetTest, WhatNobodyAskedForTakesFromTheLeftover) {
  GrowthBudget Budget(90, {60, 60, 60});
  Budget.take(60, 10);
  Budget.take(0, 15);
  EXPECT_EQ(Budget.getShare(), 35u);
}

TEST(GrowthBudgetTest, NeverMoreThanTheLimit) {
  std::mt19937 Random(1);
  auto Draw = [&Random](unsigned Most) {
    return std::uniform_int_distribution<unsigned>(0, Most)(Random);
  };
  for (unsigned Round = 0; Round != 2000; ++Round) {
    const unsigned Limit = Draw(500);
    std::vector<unsigned> Demands(Draw(12));
    for (unsigned &Demand : Demands)
      Demand = Draw(300);
    GrowthBudget Budget(Limit, Demands);
    uint64_t Sum = 0;
    for (unsigned Demand : Demands) {
      const uint64_t Growth =
          Draw(std::min<uint64_t>(Budget.getShare(), 2 * Demand));
      Sum += Growth;
      Budget.take(Demand, Growth);
    }
    EXPECT_LE(Sum, Limit);
  }
}

} // namespace
