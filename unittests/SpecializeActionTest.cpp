//===- SpecializeActionTest.cpp - Constants around a ring -----------------===//

#include "TestModule.h"
#include "host/FunctionSpecializeAction.h"
#include "host/InliningPlan.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

namespace {

using Selection = std::map<Function *, std::set<CallInst *>>;

/// A call of \p Callee with a constant, in a function of its own.
std::string entry(const std::string &Name, const std::string &Callee,
                  int Value) {
  return "define i32 @" + Name + "() {\n  %r = call i32 @" + Callee + "(i32 " +
         std::to_string(Value) + ")\n  ret i32 %r\n}\n";
}

/// A function of one call for each of \p Callees, before which stand \p Filler
/// other instructions.
std::string calls(const std::string &Name,
                  const std::vector<std::string> &Callees,
                  unsigned Filler = 0) {
  std::string Text = "define void @" + Name + "(i32 %n) {\n";
  for (unsigned I = 0; I != Filler; ++I)
    Text += "  %f" + std::to_string(I) + " = add i32 %n, 1\n";
  for (const std::string &Callee : Callees)
    Text += "  call void @" + Callee + "(i32 %n)\n";
  return Text + "  ret void\n}\n";
}

class SpecializeActionTest : public PassTest {
protected:
  /// Turns the functions that ask for it into rings, and goes no further.
  static void buildRings(TestModule &TM) {
    LoggingDriver Driver(TM);
    // A copy of the walk without what comes behind it.
    std::vector<Function *> Functions;
    for (Function &F : TM.module())
      Functions.push_back(&F);
    for (Function *F : Functions)
      Driver->inlineRecursionFunction(F);
  }

  static CallInst *firstCall(TestModule &TM, StringRef Caller) {
    for (BasicBlock &BB : TM.function(Caller))
      for (Instruction &I : BB)
        if (auto *Call = dyn_cast<CallInst>(&I))
          return Call;
    return nullptr;
  }

  static unsigned countSpecialized(TestModule &TM) {
    return count_if(TM.module(), [](const Function &F) {
      return F.getName().contains(".specialized.");
    });
  }

  ScopedOption<unsigned> CloneLimit{"maximum-clone-limit-inline-recursion",
                                    1000};
};

TEST_F(SpecializeActionTest, SelectsTheCallsThatEnterWithAConstant) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 9) + caller("open", "f"));
  buildRings(TM);
  const std::string Before = TM.text();
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), true);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_EQ(Selected.begin()->first, &TM.function("f.recurse.clone"));
  EXPECT_THAT(
      Selected.begin()->second,
      UnorderedElementsAre(firstCall(TM, "main"), firstCall(TM, "other")));
  // It only reads.
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, TheFlagAsksForTheGatesMark) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  for (Function &F : TM.module())
    F.removeFnAttr("specialize-inline-recursion-function-eligible");
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), false);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_THAT(Selected.begin()->second,
              UnorderedElementsAre(firstCall(TM, "main")));
}

TEST_F(SpecializeActionTest, ChainsAreNoRings) {
  TestModule TM(countdown("f") + entry("main", "f", 9));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  ASSERT_THAT(TM.calleesOf("main"), ElementsAre("f.recurse.clone"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), false),
              IsEmpty());
}

TEST_F(SpecializeActionTest, InvokesAreNotSelected) {
  TestModule TM(remainder("f", 4) + R"(
declare i32 @personality(...)
define i32 @main() personality ptr @personality {
  %r = invoke i32 @f(i32 9) to label %normal unwind label %broken
normal:
  ret i32 %r
broken:
  %pad = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %pad
}
)");
  buildRings(TM);
  EXPECT_TRUE(TM.module().getFunction("f.recurse.clone"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
}

TEST_F(SpecializeActionTest, NothingSelectedChangesNothing) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  const std::string Before = TM.text();
  Selection None;
  EXPECT_FALSE(FunctionSpecializeAction().transform(TM.module(), None, {}));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, OnlyWhatIsSelectedIsRedirected) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 9));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  Selected.begin()->second.erase(firstCall(TM, "other"));
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.specialized.9"));
  EXPECT_THAT(TM.calleesOf("other"), ElementsAre("f.recurse.clone"));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializeActionTest, ExcludedCallsAreNeverTouched) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 8));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  CallInst *Kept = firstCall(TM, "main");
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {Kept}));
  EXPECT_EQ(firstCall(TM, "main"), Kept);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.recurse.clone"));
  EXPECT_THAT(TM.calleesOf("other"), ElementsAre("f.specialized.8"));
  EXPECT_FALSE(TM.module().getFunction("f.specialized.9"));
}

TEST_F(SpecializeActionTest, AllExcludedIsNoChange) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  const std::string Before = TM.text();
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_FALSE(
      Action.transform(TM.module(), Selected, {firstCall(TM, "main")}));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, SpecialisationsAreNoCopiesOfTheRing) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 5));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  const Function &F = TM.function("f.specialized.5");
  EXPECT_TRUE(F.hasInternalLinkage());
  EXPECT_FALSE(
      F.hasFnAttribute("specialize-inline-recursion-function-eligible"));
  // A second round finds nothing left to do.
  EXPECT_THAT(Action.selectCI(TM.module(), true), IsEmpty());
}

TEST_F(SpecializeActionTest, AHundredEntriesShareWhatTheyMeet) {
  // The remainder ends every walk at a multiple of eight, at the latest.
  std::string Text = remainder("f", 8);
  for (int I = 0; I != 100; ++I)
    Text += entry("main" + std::to_string(I), "f", I);
  TestModule TM(Text);
  buildRings(TM);
  ASSERT_THAT(TM.functionNames(), SizeIs(1 + 100 + 8));
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 100u);
  EXPECT_THAT(TM.calleesOf("main99"), ElementsAre("f.specialized.99"));
  EXPECT_THAT(TM.calleesOf("f.specialized.99"),
              ElementsAre("f.specialized.98"));
  EXPECT_THAT(TM.calleesOf("f.specialized.96"), IsEmpty());
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializeActionTest, TheFirstEntriesGetWhatTheLimitAllows) {
  std::string Text = remainder("f", 8);
  for (int I = 1; I != 6; ++I)
    Text += entry("main" + std::to_string(I), "f", 8 * I);
  TestModule TM(Text);
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-specializations", 3);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 3u);
}

TEST_F(SpecializeActionTest, TheClonesOfEveryRingAreCountedAlone) {
  TestModule TM(remainder("f", 8) + remainder("g", 8) + entry("a", "f", 16) +
                entry("b", "f", 8) + entry("c", "g", 16) + entry("d", "g", 8));
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-specializations", 1);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 2u);
}

TEST_F(SpecializeActionTest, TheSizeIsCountedForTheWholeModule) {
  TestModule TM(remainder("f", 8) + remainder("g", 8) + entry("a", "f", 16) +
                entry("c", "g", 16));
  buildRings(TM);
  // The body has seven instructions.
  ScopedOption<unsigned> Limit("inline-recursion-max-specialized-size", 7);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 1u);
}

/// What planInlining() says about the functions of a module, in the order of
/// \p Names, as a string of `i` (inlined) and `-`.
std::string plan(const std::string &Text, const std::vector<std::string> &Names,
                 unsigned MaxInlinedSize, unsigned GrowthLeft = ~0U,
                 function_ref<void(TestModule &)> Prepare = {}) {
  TestModule TM(Text);
  if (Prepare)
    Prepare(TM);
  std::vector<Function *> Group;
  for (const std::string &Name : Names)
    Group.push_back(&TM.function(Name));
  planInlining(Group, MaxInlinedSize, GrowthLeft);
  std::string Result;
  for (Function *F : Group) {
    const bool Inlined = F->hasFnAttribute(Attribute::AlwaysInline);
    // Always one of them.
    EXPECT_NE(Inlined, F->hasFnAttribute(Attribute::NoInline)) << Result;
    Result += Inlined ? 'i' : '-';
  }
  EXPECT_TRUE(TM.isValid());
  return Result;
}

TEST(InliningPlanTest, AnEmptyGroup) {
  unsigned GrowthLeft = 0;
  planInlining({}, 100, GrowthLeft);
}

TEST(InliningPlanTest, TheLimitIsIncluded) {
  const std::string Text = calls("a", {}, 9);
  EXPECT_EQ(plan(Text, {"a"}, 9), "-");
  EXPECT_EQ(plan(Text, {"a"}, 10), "i");
  EXPECT_EQ(plan(Text, {"a"}, 0), "-");
}

TEST(InliningPlanTest, WhatIsInlinedCountsForEveryCallOfIt) {
  // b has 10 instructions; a has 4, and 24 with both calls of b inlined.
  const std::string Text = calls("b", {}, 9) + calls("a", {"b", "b"}, 1);
  EXPECT_EQ(plan(Text, {"a", "b"}, 24), "ii");
  EXPECT_EQ(plan(Text, {"a", "b"}, 23), "-i");
  EXPECT_EQ(plan(Text, {"a", "b"}, 9), "i-");
}

TEST(InliningPlanTest, WhatIsNotInlinedDoesNotCount) {
  // The three levels above the large one start anew.
  const std::string Text = calls("d", {}, 100) + calls("c", {"d"}) +
                           calls("b", {"c", "c"}) + calls("a", {"b", "b"});
  EXPECT_EQ(plan(Text, {"a", "b", "c", "d"}, 20), "iii-");
  EXPECT_EQ(plan(Text, {"a", "b", "c", "d"}, 16), "-ii-");
}

TEST(InliningPlanTest, ACycleIsCutWhereItCloses) {
  const std::string Text = "declare void @outside(i32)\n" + calls("a", {"b"}) +
                           calls("b", {"c"}) + calls("c", {"a", "outside"});
  EXPECT_EQ(plan(Text, {"a", "b", "c"}, 1000), "-ii");
  EXPECT_EQ(plan(calls("a", {"a"}), {"a"}, 1000), "-");
  EXPECT_EQ(plan(calls("a", {"b"}) + calls("b", {"b"}), {"a", "b"}, 1000),
            "i-");
  // Also where it does not close at the first.
  EXPECT_EQ(plan(calls("a", {"b"}) + calls("b", {"c"}) + calls("c", {"b"}),
                 {"a", "b", "c"}, 1000),
            "i-i");
}

TEST(InliningPlanTest, CallsOfOthersDoNotCount) {
  const std::string Text = calls("large", {}, 500) + calls("a", {"large"});
  EXPECT_EQ(plan(Text, {"a"}, 2), "i");
}

TEST(InliningPlanTest, EarlierMarksAreOverridden) {
  auto Mark = [](TestModule &TM) {
    TM.function("a").addFnAttr(Attribute::AlwaysInline);
    TM.function("b").addFnAttr(Attribute::NoInline);
  };
  EXPECT_EQ(
      plan(calls("b", {}) + calls("a", {"b"}, 50), {"a", "b"}, 10, ~0U, Mark),
      "-i");
}

TEST(InliningPlanTest, SizesSaturate) {
  std::string Text = calls("f0", {}, 2);
  std::vector<std::string> Names = {"f0"};
  for (unsigned I = 1; I != 70; ++I) {
    const std::string Below = Names.front();
    Names.insert(Names.begin(), "f" + std::to_string(I));
    Text += calls(Names.front(), {Below, Below, Below});
  }
  // Level k has 5 * 3^k - 2 instructions and three calls.  Up to level 17 all
  // of that fits into what 32 bits can count; wrapped around, the next ones
  // would seem to fit as well.
  const std::string Plan = plan(Text, Names, ~0U);
  EXPECT_EQ(Plan.substr(70 - 20), "i-" + std::string(18, 'i'));
}

TEST(InliningPlanTest, GrowthIsTakenFromTheBudget) {
  // Three instructions, called three times: inlined, six more of them.
  const std::string Text = calls("f0", {}, 2) + calls("f1", {"f0", "f0", "f0"});
  EXPECT_EQ(plan(Text, {"f1", "f0"}, 100, 6).back(), 'i');
  EXPECT_EQ(plan(Text, {"f1", "f0"}, 100, 5).back(), '-');
}

} // namespace
