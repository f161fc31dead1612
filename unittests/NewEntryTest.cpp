//===- NewEntryTest.cpp - The new pass manager's way in -------------------===//

#include "TestModule.h"
#include "llvm/Analysis/LoopInfo.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;

namespace {

/// Nothing, not even a set, is preserved.
void expectNone(const PreservedAnalyses &Preserved) {
  EXPECT_FALSE(Preserved.areAllPreserved());
  EXPECT_FALSE(Preserved.allAnalysesInSetPreserved<AllAnalysesOn<Module>>());
  EXPECT_FALSE(Preserved.allAnalysesInSetPreserved<AllAnalysesOn<Function>>());
  EXPECT_FALSE(Preserved.allAnalysesInSetPreserved<CFGAnalyses>());
  EXPECT_FALSE(Preserved.getChecker<DominatorTreeAnalysis>().preserved());
  EXPECT_FALSE(Preserved.getChecker<ScalarEvolutionAnalysis>().preserved());
  EXPECT_FALSE(
      Preserved.getChecker<FunctionAnalysisManagerModuleProxy>().preserved());
}

class NewEntryTest : public PassTest {};

TEST_F(NewEntryTest, AnEmptyModuleNeverReachesTheDriver) {
  TestModule TM;
  setDepth(5);
  EXPECT_TRUE(
      InlineRecursionPass(3).run(TM.module(), TM.analyses()).areAllPreserved());
  EXPECT_EQ(depth(), 5u);
}

TEST_F(NewEntryTest, NothingAcceptedPreservesAll) {
  TestModule TM(leaf("f") + "declare void @g()\n");
  const std::string Before = TM.text();
  EXPECT_TRUE(
      InlineRecursionPass(3).run(TM.module(), TM.analyses()).areAllPreserved());
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(NewEntryTest, SomethingAcceptedPreservesNone) {
  TestModule TM(leaf("leaf") + countdown("f") + leaf("last"));
  expectNone(InlineRecursionPass(3).run(TM.module(), TM.analyses()));
  EXPECT_EQ(TM.module().size(), 4u);
}

TEST_F(NewEntryTest, ALevelThatIsGivenOverridesTheOption) {
  ScopedOption<int> Level("inline-recursion-opt-level", 4);
  TestModule TM(countdown("f") + caller("main", "f"));
  expectNone(InlineRecursionPass(3).run(TM.module(), TM.analyses()));
  EXPECT_THAT(TM.functionNames(), ElementsAre("f", "main", "f.recurse.clone"));
}

TEST_F(NewEntryTest, ALevelThatIsNotGivenIsTheOption) {
  ScopedOption<int> Level("inline-recursion-opt-level", 4);
  TestModule TM(countdown("f") + caller("main", "f"));
  expectNone(InlineRecursionPass().run(TM.module(), TM.analyses()));
  EXPECT_EQ(TM.module().size(), 12u);
  EXPECT_TRUE(TM.isValid());
}

TEST_F(NewEntryTest, ANegativeLevelOfThePassIsInvalid) {
  TestModule TM(countdown("f"));
  EXPECT_EQ(debugOutputOf([&] {
              InlineRecursionPass(-1).run(TM.module(), TM.analyses());
            }),
            "Invalid Inline Recursion Opt Level: -1\n"
            "Setting to default Inline Recursion Opt Level: 2\n");
}

TEST_F(NewEntryTest, TheSpecialDepthIsTheOptions) {
  ScopedOption<unsigned> Limit("special-inline-recursion-depth", 4);
  TestModule TM(remainder("inside", 4) + remainder("outside", 8));
  expectNone(InlineRecursionPass(3).run(TM.module(), TM.analyses()));
  EXPECT_EQ(TM.module().size(), 2u + 4u + 1u);
}

TEST_F(NewEntryTest, RunsInAPassManager) {
  TestModule TM(countdown("f") + caller("main", "f"));
  ModulePassManager MPM;
  MPM.addPass(InlineRecursionPass(4));
  EXPECT_FALSE(MPM.run(TM.module(), TM.analyses()).areAllPreserved());
  EXPECT_EQ(TM.module().size(), 12u);
  EXPECT_TRUE(TM.isValid());
}

} // namespace
