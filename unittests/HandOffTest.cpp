//===- HandOffTest.cpp - When a module goes to specialisation -------------===//

#include "ScriptedHost.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class HandOffTest : public ScriptedHostTest {};

TEST_F(HandOffTest, AnEmptyModuleIsNotHandedOver) {
  TestModule TM;
  LoggingDriver Driver(TM, 3);
  Driver->SpecializeSeen = true;
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_THAT(Script.Log, IsEmpty());
}

TEST_F(HandOffTest, ChainsAloneAreNotHandedOver) {
  TestModule TM(countdown("f"));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Script.Log, IsEmpty());
}

TEST_F(HandOffTest, RingsAreHandedOverOncePerModule) {
  TestModule TM(remainder("f", 2) + remainder("g", 4));
  TM.module().setModuleIdentifier("m");
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Script.Log, ElementsAre("select m true", "transform m"));
}

TEST_F(HandOffTest, TheSelectionIsPassedOnWithNothingExcluded) {
  TestModule TM(remainder("f", 2) + caller("main", "f"));
  Function &Main = TM.function("main");
  auto *Call = cast<CallInst>(&Main.getEntryBlock().front());
  Script.Selected[&Main].insert(Call);
  Script.ExcludedAsPassed.insert(Call);
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_EQ(Script.SelectedAsPassed, Script.Selected);
  EXPECT_THAT(Script.ExcludedAsPassed, IsEmpty());
}

TEST_F(HandOffTest, TheComponentsAnswerIsIgnored) {
  for (bool Answer : {false, true}) {
    Script.TransformChanged = Answer;
    TestModule TM(remainder("f", 2));
    LoggingDriver Driver(TM, 3);
    EXPECT_TRUE(Driver->processModule(TM.module()));
  }
}

TEST_F(HandOffTest, AnUnchangedModuleIsNotHandedOver) {
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 1);
  TestModule TM(remainder("f", 2));
  LoggingDriver Driver(TM, 3);
  EXPECT_FALSE(Driver->processModule(TM.module()));
  EXPECT_TRUE(Driver->SpecializeSeen);
  EXPECT_THAT(Script.Log, IsEmpty());
}

TEST_F(HandOffTest, ARefusedRingNextToAChainIsHandedOver) {
  ScopedOption<unsigned> Max("maximum-clone-limit-inline-recursion", 1);
  TestModule TM(remainder("f", 2) + countdown("g"));
  TM.module().setModuleIdentifier("m");
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Script.Log, ElementsAre("select m true", "transform m"));
}

TEST_F(HandOffTest, HandingOverComesAfterTheWholeWalk) {
  TestModule TM(remainder("f", 2) + countdown("g"));
  std::vector<std::string> *Log = &Script.Log;
  LoggingDriver Driver(TM, 3);
  auto GetSE = [&](Function &F) {
    Log->push_back("SE " + F.getName().str());
    return &TM.scalarEvolution(F);
  };
  Driver->GetSE = GetSE;
  TM.module().setModuleIdentifier("m");
  EXPECT_TRUE(Driver->processModule(TM.module()));
  EXPECT_THAT(Script.Log,
              ElementsAre("SE f", "SE g", "select m true", "transform m"));
}

} // namespace
