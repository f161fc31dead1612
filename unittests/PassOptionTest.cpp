//===- PassOptionTest.cpp - The options of the pass by name ---------------===//

#include "plugin/ir/PassOption.h"
#include "gtest/gtest.h"

using namespace llvm::inlinerecursion;

namespace {

TEST(PassOptionTest, ValuesAreReadAndSet) {
  const unsigned Before = getPassOption(DepthOption);
  setPassOption(DepthOption, Before + 3);
  EXPECT_EQ(getPassOption(DepthOption), Before + 3);
  setPassOption(DepthOption, Before);
}

TEST(PassOptionTest, AScopeKeepsChangesToItself) {
  const unsigned Before = getPassOption(DepthOption);
  {
    const PassOptionScope Scope(DepthOption, Before + 1);
    EXPECT_EQ(getPassOption(DepthOption), Before + 1);
    const PassOptionScope Inner(DepthOption);
    setPassOption(DepthOption, Before + 2);
  }
  EXPECT_EQ(getPassOption(DepthOption), Before);
}

TEST(PassOptionDeathTest, AnUnknownNameEndsTheProcess) {
  EXPECT_EXIT(getPassOption("inline-recursion-no-such-option"),
              testing::ExitedWithCode(1),
              "the pass has no option 'inline-recursion-no-such-option'");
}

} // namespace
