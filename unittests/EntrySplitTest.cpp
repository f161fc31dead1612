//===- EntrySplitTest.cpp - What a recursion does before its test ---------===//

#include "plugin/rewrite/EntrySplit.h"
#include "TestModule.h"
#include "llvm/IR/InstIterator.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

const char *const Declarations = R"(
@g = external global i32
declare void @other()
declare i32 @unknown(i32)
define i32 @known(i32 %x) {
  ret i32 %x
}
declare i32 @__gxx_personality_v0(...)
)";

/// f(n, p), which runs \p Work, ends if %end is true, and else runs \p Rec,
/// whose last block is left to an exit with `%x`, \p Result.
std::string working(const std::string &Work, const std::string &Rec,
                    const std::string &Result = "i32 [ 0, %entry ], "
                                                "[ 1, %rec ]") {
  return Declarations + std::string(R"(
define i32 @f(i32 %n, ptr %p) personality ptr @__gxx_personality_v0 {
entry:
)") + Work +
         R"(
  br i1 %end, label %exit, label %rec
rec:
)" + Rec +
         R"(
  br label %exit
exit:
  %x = phi )" +
         Result + R"(
  ret i32 %x
}
)";
}

const std::string Count =
    "  %l = load i32, ptr @g\n  %l1 = add i32 %l, 1\n  store i32 %l1, ptr @g\n"
    "  %end = icmp eq i32 %n, 0\n";
const std::string Recurse =
    "  %m = sub i32 %n, 1\n  %a = call i32 @f(i32 %m, ptr %p)\n";

/// Names of what is handed over, or "none".
std::string handedOver(const std::string &Assembly, unsigned MaxSize = 30,
                       bool InlinerFollows = false) {
  TestModule TM(Assembly);
  const auto Split = findEntrySplit(TM.function("f"), MaxSize, InlinerFollows);
  if (!Split)
    return "none";
  std::string Names;
  for (const Instruction *I : Split->LiveValues)
    Names += I->getName().str() + " ";
  return Names;
}

TEST(FindEntrySplitTest, WorkMayWrite) {
  TestModule TM(working(Count, Recurse));
  Function &F = TM.function("f");
  const auto Split = findEntrySplit(F, 30, false);
  ASSERT_TRUE(Split);
  EXPECT_EQ(Split->Head.Blocks.size(), 1u);
  EXPECT_EQ(Split->Begin->getName(), "rec");
  EXPECT_EQ(Split->Before->getName(), "entry");
  EXPECT_TRUE(Split->LiveValues.empty());
}

TEST(FindEntrySplitTest, NotMoreThanTheLimit) {
  // Five and the two at the exit.
  EXPECT_EQ(handedOver(working(Count, Recurse), 7), "");
  EXPECT_EQ(handedOver(working(Count, Recurse), 6), "none");
}

TEST(FindEntrySplitTest, HandsOverWhatIsUsedBeyond) {
  EXPECT_EQ(handedOver(working(Count, Recurse + "  store i32 %l1, ptr %p\n")),
            "l1 ");
  // By a PHI, along the edge that begins the rest or one that is part of it.
  EXPECT_EQ(
      handedOver(working(Count, "  %q = phi i32 [ %l, %entry ]\n" + Recurse)),
      "l ");
  EXPECT_EQ(
      handedOver(working(Count, Recurse, "i32 [ 0, %entry ], [ %l1, %rec ]")),
      "l1 ");
  // Not along the one that ends it.
  EXPECT_EQ(
      handedOver(working(Count, Recurse, "i32 [ %l1, %entry ], [ 0, %rec ]")),
      "");
}

TEST(FindEntrySplitTest, NotMoreArgumentsThanRegisters) {
  std::string Work, Use;
  for (unsigned I = 0; I != 4; ++I) {
    const std::string V = "%v" + std::to_string(I);
    Work += "  " + V + " = load volatile i32, ptr %p\n";
    Use += "  store i32 " + V + ", ptr @g\n";
  }
  EXPECT_EQ(handedOver(working(Work + Count, Recurse + Use)), "v0 v1 v2 v3 ");
  EXPECT_EQ(handedOver(working(Work + Count,
                               Recurse + Use + "  store i32 %l, ptr @g\n")),
            "none");
}

TEST(FindEntrySplitTest, NotAVariableThatIsUsedOnBothSides) {
  const std::string Variable = "  %v = alloca i32\n  store i32 %n, ptr %v\n";
  EXPECT_EQ(handedOver(working(Variable + Count, Recurse)), "");
  EXPECT_EQ(handedOver(working(Variable + Count,
                               Recurse + "  %w = load i32, ptr %v\n")),
            "none");
}

TEST(FindEntrySplitTest, NotAVariableOfUnknownSize) {
  auto HandedOver = [](const std::string &Size) {
    return handedOver(working("  %v = alloca i32, i32 " + Size + "\n" + Count,
                              Recurse + "  store i32 %a, ptr %v\n"));
  };
  EXPECT_EQ(HandedOver("2"), "");
  EXPECT_EQ(HandedOver("%n"), "none");
}

TEST(SplitEntryTest, AVariableOfTheRest) {
  TestModule TM(working("  %v = alloca i32\n" + Count,
                        Recurse + "  store i32 %a, ptr %v\n"));
  Function &F = TM.function("f");
  const auto Split = findEntrySplit(F, 30, false);
  ASSERT_TRUE(Split);
  EXPECT_TRUE(Split->LiveValues.empty());
  Function &Rest = splitEntry(F, *Split);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  auto *Variable = dyn_cast_or_null<AllocaInst>(TestModule::find(Rest, "v"));
  ASSERT_TRUE(Variable);
  EXPECT_TRUE(Variable->isStaticAlloca());
}

TEST(FindEntrySplitTest, LaterIfCallsMayBeInlined) {
  const std::string CallsOther =
      working("  %u = call i32 @unknown(i32 1)\n" + Count, Recurse);
  EXPECT_EQ(handedOver(CallsOther, 30, /*InlinerFollows=*/true), "");
  const std::string CallsKnown =
      working("  %u = call i32 @known(i32 1)\n" + Count, Recurse);
  EXPECT_EQ(handedOver(CallsKnown, 30, /*InlinerFollows=*/true), "none");
  EXPECT_EQ(handedOver(CallsKnown, 30, /*InlinerFollows=*/false), "");
}

TEST(FindEntrySplitTest, NotBehindASelfCall) {
  EXPECT_EQ(handedOver(working("  %s = call i32 @f(i32 0, ptr %p)\n" + Count,
                               Recurse)),
            "none");
}

TEST(FindEntrySplitTest, NotWithoutATest) {
  EXPECT_EQ(handedOver(R"(
define void @f(ptr %p) {
  store i32 1, ptr %p
  call void @f(ptr %p)
  ret void
}
)"),
            "none");
}

/// f(n, p), a loop over self calls that tests behind \p Work.
std::string looping(const std::string &Test) {
  return Declarations + std::string(R"(
define i32 @f(i32 %n, ptr %p) {
entry:
  %first = load i32, ptr %p
  store i32 %n, ptr %p
  br label %loop
loop:
  %i = phi i32 [ %first, %entry ], [ %i1, %body ]
  %s = phi i32 [ %n, %entry ], [ %s1, %body ]
)") + Test +
         R"(
  %end = icmp eq i32 %i, 0
  br i1 %end, label %exit, label %body
body:
  %a = call i32 @f(i32 %i, ptr %p)
  %s1 = sub i32 %a, %s
  %i1 = lshr i32 %i, 1
  br label %loop
exit:
  ret i32 %s
}
)";
}

TEST(FindEntrySplitTest, ATestAtTheHeadOfALoopIsMadeOnceMore) {
  TestModule TM(looping(""));
  const auto Split = findEntrySplit(TM.function("f"), 30, false);
  ASSERT_TRUE(Split);
  EXPECT_EQ(Split->Head.Blocks.size(), 2u);
  EXPECT_EQ(Split->Begin->getName(), "loop");
  EXPECT_EQ(Split->Before->getName(), "entry");
  ASSERT_EQ(Split->LiveValues.size(), 1u);
  EXPECT_EQ(Split->LiveValues[0]->getName(), "first");
  EXPECT_EQ(handedOver(looping("  store i32 1, ptr @g\n")), "none");
}

/// The calls in \p F of a function of that name.
unsigned countCalls(Function &F, StringRef Callee) {
  unsigned Calls = 0;
  for (Instruction &I : instructions(F))
    if (auto *Call = dyn_cast<CallBase>(&I))
      Calls += Call->getCalledFunction()->getName() == Callee;
  return Calls;
}

TEST(SplitEntryTest, TheHeadIsDoneByThoseWhoCall) {
  for (const std::string &Assembly :
       {working(Count, Recurse + "  store i32 %l1, ptr %p\n",
                "i32 [ %l, %entry ], [ %a, %rec ]"),
        looping("")}) {
    TestModule TM(Assembly);
    Function &F = TM.function("f");
    const auto Split = findEntrySplit(F, 30, false);
    ASSERT_TRUE(Split);
    Function &Rest = splitEntry(F, *Split);
    EXPECT_FALSE(verifyModule(TM.module(), &errs()));
    EXPECT_TRUE(Rest.hasInternalLinkage());
    EXPECT_EQ(Rest.getName(), "f.recurse.rest");
    EXPECT_EQ(Rest.arg_size(), 3u);
    EXPECT_EQ(countCalls(F, "f"), 0u);
    EXPECT_EQ(countCalls(F, "f.recurse.rest"), 1u);
    EXPECT_EQ(countCalls(Rest, "f"), 0u);
    EXPECT_EQ(countCalls(Rest, "f.recurse.rest"), 1u);
  }
}

/// f(p), an evaluator that runs \p Work first.
std::string evaluating(const std::string &Work) {
  return Declarations + std::string(R"(
define i32 @f(i32 %n, ptr %p) {
entry:
  %v = alloca i32
)") + Work +
         R"(
  %kind = load i32, ptr %p
  switch i32 %kind, label %two [ i32 0, label %leaf
                                 i32 1, label %one ]
leaf:
  ret i32 %n
one:
  %a = call i32 @f(i32 1, ptr @g)
  store i32 %a, ptr %v
  %b = load volatile i32, ptr %v
  ret i32 %b
two:
  %l = call i32 @f(i32 2, ptr null)
  %r = call i32 @f(i32 %kind, ptr %p)
  %difference = sub i32 %l, %r
  ret i32 %difference
}
)";
}

TEST(SplitEntryTest, AChoiceIsMadeByTheRest) {
  TestModule TM(evaluating(""));
  Function &F = TM.function("f");
  const auto Split = findEntrySplit(F, 30, false);
  ASSERT_TRUE(Split);
  EXPECT_EQ(Split->Begin->getName(), "entry");
  EXPECT_FALSE(Split->Before);
  EXPECT_TRUE(Split->LiveValues.empty());
  Function &Rest = splitEntry(F, *Split);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  EXPECT_EQ(countCalls(F, "f.recurse.rest"), 1u);
  EXPECT_EQ(countCalls(F, "f"), 0u);
  EXPECT_EQ(countCalls(Rest, "f.recurse.rest"), 3u);
  EXPECT_EQ(countCalls(Rest, "f"), 0u);
  unsigned Switches = 0;
  for (Instruction &I : instructions(Rest))
    Switches += isa<SwitchInst>(I);
  // In front of the calls there are two ways only.
  EXPECT_EQ(Switches, 1u);
  auto *Variable = dyn_cast_or_null<AllocaInst>(TestModule::find(Rest, "v"));
  ASSERT_TRUE(Variable);
  EXPECT_TRUE(Variable->isStaticAlloca());
}

TEST(SplitEntryTest, AChoiceBehindWork) {
  const std::string Work = "  %c = load i32, ptr @g\n  %c1 = add i32 %c, 1\n"
                           "  store i32 %c1, ptr @g\n";
  // In a block of its own, or in that of the test.
  for (std::string Next : {"  br label %look\nlook:\n", ""}) {
    TestModule TM(evaluating(Work + Next));
    Function &F = TM.function("f");
    const auto Split = findEntrySplit(F, 30, false);
    ASSERT_TRUE(Split);
    EXPECT_EQ(Split->Before->getName(), "entry");
    EXPECT_EQ(Split->FirstOfTest == nullptr, !Next.empty());
    Function &Rest = splitEntry(F, *Split);
    EXPECT_FALSE(verifyModule(TM.module(), &errs()));
    // By those who call, and not by the rest.
    EXPECT_TRUE(TestModule::find(F, "c1"));
    EXPECT_FALSE(TestModule::find(Rest, "c1"));
    EXPECT_TRUE(TestModule::find(Rest, "c1.i"));
    EXPECT_TRUE(TestModule::find(Rest, "kind"));
  }
}

TEST(FindEntrySplitTest, HandsOverWhatTheTestComesBehind) {
  const std::string Work = "  %c = load i32, ptr @g\n  store i32 1, ptr @g\n";
  EXPECT_EQ(handedOver(evaluating(Work)), "");
  std::string Uses = evaluating(Work);
  Uses.replace(Uses.find("sub i32 %l, %r"), 14, "sub i32 %c, %r");
  EXPECT_EQ(handedOver(Uses), "c ");
  // By the test itself.
  std::string Tests = evaluating(Work + "  %k = add i32 %c, 1\n");
  Tests.replace(Tests.find("switch i32 %kind"), 16, "switch i32 %k");
  EXPECT_EQ(handedOver(Tests), "c ");
  // By what ends it.
  std::string Ends = evaluating(Work);
  Ends.replace(Ends.find("ret i32 %n"), 10, "ret i32 %c");
  EXPECT_EQ(handedOver(Ends), "");
}

TEST(FindEntrySplitTest, NotAChoiceThatIsComeBackTo) {
  std::string Loop = evaluating("  br label %look\nlook:\n"
                                "  store i32 1, ptr @g\n");
  EXPECT_EQ(handedOver(Loop), "");
  Loop.replace(Loop.find("ret i32 %b"), 10, "br label %look");
  EXPECT_EQ(handedOver(Loop), "none");
}

TEST(FindEntrySplitTest, NotAVariableBetweenWorkAndChoice) {
  std::string Late = evaluating("  store i32 1, ptr @g\n");
  const std::string Variable = "  %v = alloca i32\n";
  Late.erase(Late.find(Variable), Variable.size());
  Late.insert(Late.find("  %kind"), Variable);
  EXPECT_EQ(handedOver(Late), "none");
}

TEST(SplitEntryTest, WhatIsHandedOverMayAliasTheArguments) {
  std::string Assembly =
      working("  %q = getelementptr i32, ptr %p, i32 1\n" + Count,
              Recurse + "  store i32 1, ptr %q\n");
  const std::string Parameter = "ptr %p) personality";
  Assembly.replace(Assembly.find(Parameter), Parameter.size(),
                   "ptr noalias nonnull %p) personality");
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  const auto Split = findEntrySplit(F, 30, false);
  ASSERT_TRUE(Split);
  Function &Rest = splitEntry(F, *Split);
  EXPECT_TRUE(F.getArg(1)->hasNoAliasAttr());
  EXPECT_FALSE(Rest.getArg(1)->hasNoAliasAttr());
  EXPECT_TRUE(Rest.getArg(1)->hasNonNullAttr());
}

TEST(SplitEntryTest, CallsThatMayThrow) {
  std::string Invoking = working(Count, R"(
  %m = sub i32 %n, 1
  %a = invoke i32 @f(i32 %m, ptr %p) to label %on unwind label %pad
pad:
  %l2 = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l2
on:)",
                                 "i32 [ 0, %entry ], [ %a, %on ]");
  TestModule TM(Invoking);
  Function &F = TM.function("f");
  const auto Split = findEntrySplit(F, 30, false);
  ASSERT_TRUE(Split);
  Function &Rest = splitEntry(F, *Split);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  EXPECT_EQ(countCalls(Rest, "f"), 0u);
  unsigned Invokes = 0;
  for (Instruction &I : instructions(Rest))
    Invokes += isa<InvokeInst>(I);
  EXPECT_EQ(Invokes, 1u);
}

} // namespace
