//===- PlanSpecTest.cpp - The language that plans are written in ----------===//

#include "plugin/plan/PlanSpec.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

PlanSpec parse(StringRef Text) { return cantFail(PlanSpec::parse(Text)); }

std::string complain(StringRef Text) {
  Expected<PlanSpec> Plan = PlanSpec::parse(Text);
  return Plan ? "" : toString(Plan.takeError());
}

TEST(PlanSpecTest, WhatIsPrintedIsRead) {
  for (StringRef Text :
       {"none", "chain", "chain copies=1", "chain copies=7 rules", "ring",
        "ring copies=2", "ring copies=1000 guard staggered pass-sum loop-first",
        "ring no-guard no-staggered no-pass-sum no-loop-first", "leaves",
        "leaves levels=6,3 pass-sum no-loop-first", "split",
        "split no-pass-sum loop-first", "states", "states arguments=1,3,4"})
    EXPECT_EQ(parse(Text).str(), Text);
}

TEST(PlanSpecTest, WordsStandInAnyOrder) {
  EXPECT_EQ(parse("ring  loop-first copies=3 no-guard ").str(),
            "ring copies=3 no-guard loop-first");
}

TEST(PlanSpecTest, WhatIsNotSaidIsOpen) {
  const PlanSpec Plan = parse("ring no-guard");
  EXPECT_FALSE(Plan.Copies);
  EXPECT_EQ(Plan.Guard, false);
  EXPECT_FALSE(Plan.Staggered);
  EXPECT_FALSE(Plan.ByRules);
}

TEST(PlanSpecTest, ListsAreKept) {
  EXPECT_THAT(parse("leaves levels=999,4,2").Levels, ElementsAre(999, 4, 2));
  EXPECT_THAT(parse("states arguments=2,10").Arguments, ElementsAre(2, 10));
}

TEST(PlanSpecTest, AShapeIsNeeded) {
  for (StringRef Text : {"", " ", "rang", "Ring", "copies=3"})
    EXPECT_THAT(complain(Text), HasSubstr("write one of none, chain, ring, "
                                          "leaves, split, states"));
}

TEST(PlanSpecTest, AWordBelongsToAShape) {
  EXPECT_EQ(complain("split copies=3"),
            "unknown word 'copies=3' behind 'split', which takes pass-sum, "
            "no-pass-sum, loop-first, no-loop-first");
  EXPECT_EQ(complain("none guard"),
            "unknown word 'guard' behind 'none', which takes nothing");
  EXPECT_THAT(complain("chain guard"), HasSubstr("which takes copies=N"));
  EXPECT_THAT(complain("leaves copies=3"), HasSubstr("levels=N,M"));
  EXPECT_THAT(complain("states levels=3"), HasSubstr("arguments=N,M"));
  EXPECT_THAT(complain("ring arguments=3"), HasSubstr("guard, no-guard"));
  EXPECT_THAT(complain("split rules"), HasSubstr("unknown word 'rules'"));
  EXPECT_THAT(complain("ring no-copies"), HasSubstr("unknown word"));
}

TEST(PlanSpecTest, NumbersHaveBounds) {
  EXPECT_EQ(complain("ring copies=1"),
            "'copies' takes numbers from 2 to 1000, not '1'");
  EXPECT_EQ(complain("ring copies=1001"),
            "'copies' takes numbers from 2 to 1000, not '1001'");
  EXPECT_EQ(complain("chain copies=0"),
            "'copies' takes numbers from 1 to 1000, not '0'");
  EXPECT_THAT(complain("ring copies="), HasSubstr("not ''"));
  EXPECT_THAT(complain("ring copies"), HasSubstr("not ''"));
  EXPECT_THAT(complain("ring copies=-3"), HasSubstr("not '-3'"));
  EXPECT_THAT(complain("ring copies=3x"), HasSubstr("not '3x'"));
  EXPECT_THAT(complain("leaves levels=1"), HasSubstr("from 2 to 999"));
  EXPECT_THAT(complain("leaves levels=1000"), HasSubstr("from 2 to 999"));
  EXPECT_THAT(complain("states arguments=0"), HasSubstr("from 1 to"));
  EXPECT_THAT(complain("states arguments=1,"), HasSubstr("not ''"));
}

TEST(PlanSpecTest, ListsAreInOrder) {
  EXPECT_THAT(complain("leaves levels=3,6"), HasSubstr("not in order"));
  EXPECT_THAT(complain("leaves levels=3,3"), HasSubstr("not in order"));
  EXPECT_THAT(complain("states arguments=2,1"), HasSubstr("not in order"));
}

} // namespace
