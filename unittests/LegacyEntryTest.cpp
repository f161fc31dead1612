//===- LegacyEntryTest.cpp - The legacy pass manager's way in -------------===//

#include "TestModule.h"
#include "llvm/IR/LegacyPassManager.h"
#include "llvm/InitializePasses.h"
#include "llvm/PassInfo.h"
#include "llvm/PassRegistry.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;

namespace {

class LegacyEntryTest : public PassTest {
protected:
  // The analysis that the pass requires has to be known to the registry, which
  // is the business of whoever runs the pass.
  LegacyEntryTest() {
    initializeScalarEvolutionWrapperPassPass(*PassRegistry::getPassRegistry());
  }

  static bool run(TestModule &TM, Pass *P) {
    legacy::PassManager PM;
    PM.add(P);
    return PM.run(TM.module());
  }
};

TEST_F(LegacyEntryTest, Registration) {
  PassRegistry &Registry = *PassRegistry::getPassRegistry();
  initializeInlineRecursionLegacyPass(Registry);
  const PassInfo *Info = Registry.getPassInfo(StringRef("inlinerecursion"));
  ASSERT_NE(Info, nullptr);
  EXPECT_EQ(Info->getPassName(),
            "Inline recursive function using function cloning");
  EXPECT_EQ(Info->getPassArgument(), "inlinerecursion");
  EXPECT_EQ(Info->getTypeInfo(), &InlineRecursionLegacy::ID);
  EXPECT_FALSE(Info->isCFGOnlyPass());
  EXPECT_FALSE(Info->isAnalysis());
  EXPECT_FALSE(Info->isAnalysisGroup());
  EXPECT_TRUE(Info->getInterfacesImplemented().empty());
  ASSERT_NE(Info->getNormalCtor(), nullptr);
  std::unique_ptr<Pass> Made(Info->createPass());
  EXPECT_EQ(Made->getPassID(), &InlineRecursionLegacy::ID);
  EXPECT_EQ(Made->getPassKind(), PT_Module);
  EXPECT_EQ(Made->getPassName(),
            "Inline recursive function using function cloning");
}

TEST_F(LegacyEntryTest, RegistrationHappensOnce) {
  PassRegistry &Registry = *PassRegistry::getPassRegistry();
  struct : PassRegistrationListener {
    unsigned Registered = 0;
    void passRegistered(const PassInfo *) override { ++Registered; }
  } Listener;
  initializeInlineRecursionLegacyPass(Registry);
  const PassInfo *First = Registry.getPassInfo(&InlineRecursionLegacy::ID);
  Registry.addRegistrationListener(&Listener);
  initializeInlineRecursionLegacyPass(Registry);
  InlineRecursionLegacy OnStack;
  std::unique_ptr<Pass> Made(createInlineRecursionLegacyPass(2));
  Registry.removeRegistrationListener(&Listener);
  EXPECT_EQ(Listener.Registered, 0u);
  EXPECT_EQ(Registry.getPassInfo(&InlineRecursionLegacy::ID), First);
  EXPECT_NE(First, nullptr);
}

TEST_F(LegacyEntryTest, ConstructionRegisters) {
  // As a ctest test of its own this is the first mention of the pass.
  std::unique_ptr<Pass> Made(createInlineRecursionLegacyPass(0));
  EXPECT_NE(PassRegistry::getPassRegistry()->getPassInfo(
                StringRef("inlinerecursion")),
            nullptr);
}

TEST_F(LegacyEntryTest, RequiresScalarEvolutionAndPreservesAll) {
  AnalysisUsage AU;
  InlineRecursionLegacy().getAnalysisUsage(AU);
  EXPECT_THAT(AU.getRequiredSet(),
              ElementsAre(&ScalarEvolutionWrapperPass::ID));
  EXPECT_TRUE(AU.getRequiredTransitiveSet().empty());
  EXPECT_TRUE(AU.getPreservedSet().empty());
  EXPECT_TRUE(AU.getUsedSet().empty());
  EXPECT_TRUE(AU.getPreservesAll());
}

TEST_F(LegacyEntryTest, HasNothingToInitializeOrFinalize) {
  TestModule TM(countdown("f"));
  const std::string Before = TM.text();
  InlineRecursionLegacy P(3);
  EXPECT_FALSE(P.doInitialization(TM.module()));
  EXPECT_FALSE(P.doFinalization(TM.module()));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(LegacyEntryTest, EmptyModuleIsUnchanged) {
  TestModule TM;
  EXPECT_FALSE(run(TM, createInlineRecursionLegacyPass(3)));
}

TEST_F(LegacyEntryTest, NothingAcceptedIsUnchanged) {
  TestModule TM(leaf("f") + "declare void @g()\n");
  const std::string Before = TM.text();
  EXPECT_FALSE(run(TM, createInlineRecursionLegacyPass(3)));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(LegacyEntryTest, ALevelThatIsGivenOverridesTheOption) {
  ScopedOption<int> Level("inline-recursion-opt-level", 4);
  TestModule TM(countdown("f") + caller("main", "f"));
  EXPECT_TRUE(run(TM, createInlineRecursionLegacyPass(3)));
  EXPECT_THAT(TM.functionNames(), ElementsAre("f", "main", "f.recurse.clone"));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(LegacyEntryTest, ALevelThatIsNotGivenIsTheOption) {
  ScopedOption<int> Level("inline-recursion-opt-level", 4);
  for (bool Default : {true, false}) {
    TestModule TM(countdown("f") + caller("main", "f"));
    EXPECT_TRUE(run(TM, Default ? new InlineRecursionLegacy
                                : createInlineRecursionLegacyPass(0)));
    EXPECT_EQ(TM.module().size(), 12u);
    EXPECT_TRUE(TM.isValid());
  }
}

TEST_F(LegacyEntryTest, ANegativeLevelIsInvalid) {
  ScopedOption<int> Level("inline-recursion-opt-level", -1);
  TestModule TM(countdown("f"));
  bool Changed = false;
  EXPECT_EQ(
      debugOutputOf([&] { Changed = run(TM, new InlineRecursionLegacy); }),
      "Invalid Inline Recursion Opt Level: -1\n"
      "Setting to default Inline Recursion Opt Level: 2\n");
  EXPECT_TRUE(Changed);
}

TEST_F(LegacyEntryTest, CostsAndGatesManyFunctionsInOneModule) {
  std::string Text;
  for (unsigned I = 0; I < 4; ++I)
    Text += countdown("chain" + std::to_string(I)) +
            remainder("ring" + std::to_string(I), 2) +
            caller("main" + std::to_string(I), "chain" + std::to_string(I));
  TestModule TM(Text);
  EXPECT_TRUE(run(TM, createInlineRecursionLegacyPass(3)));
  EXPECT_EQ(TM.module().size(), 12u + 4u + 8u);
  EXPECT_TRUE(TM.isValid());
}

TEST_F(LegacyEntryTest, TheDefaultFlowHasBothAnalyses) {
  // Entered with 3, a countdown is active four times.  The estimate and the
  // benefit need the dominator tree, for several functions of one module.
  std::string Text;
  for (const char *Name : {"f", "g"})
    Text += countdown(Name) + "define i32 @enter_" + Name +
            "() {\n  %r = call i32 @" + Name + "(i32 3)\n  ret i32 %r\n}\n";
  TestModule TM(Text);
  EXPECT_TRUE(run(TM, createInlineRecursionLegacyPass(0)));
  EXPECT_EQ(TM.module().size(), 4u + 2u * 4u);
  EXPECT_TRUE(TM.isValid());
}

TEST_F(LegacyEntryTest, TheSpecialDepthIsTheOptions) {
  ScopedOption<unsigned> Limit("special-inline-recursion-depth", 4);
  TestModule TM(remainder("inside", 4) + remainder("outside", 8));
  EXPECT_TRUE(run(TM, createInlineRecursionLegacyPass(3)));
  EXPECT_TRUE(TM.function("inside").hasFnAttribute(
      "specialize-inline-recursion-function-eligible"));
  EXPECT_FALSE(TM.function("outside").hasFnAttribute(
      "specialize-inline-recursion-function-eligible"));
  EXPECT_EQ(TM.module().size(), 2u + 4u + 1u);
}

} // namespace
