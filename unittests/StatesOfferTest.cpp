//===- StatesOfferTest.cpp - When copies for states pay -------------------===//

#include "TestModule.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Offers.h"
#include "plugin/policy/Tuning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// What is offered for @f of a module, where states may add \p StateGrowth
/// instructions.
class Offered {
public:
  explicit Offered(const std::string &Assembly, unsigned StateGrowth = 1000,
                   bool InlinerFollows = true)
      : TM(Assembly),
        Known(TM.function("f"), TM.functionAnalyses(), InlinerFollows) {
    Bounds Limits = getDefaultBounds();
    Limits.StateGrowth = StateGrowth;
    Limits.InlinerFollows = InlinerFollows;
    What = offerStates(Known, Limits);
    Verdict Refusal = refuse("");
    if (!What)
      explainNoStates(Known, Limits, Refusal);
    Why = Refusal.str();
  }

private:
  TestModule TM;

public:
  const Facts Known;
  std::optional<Plan> What;
  std::string Why;
};

/// @f(flag, node), whose block `both` goes on with \p Calls.  \p Unfolded
/// instructions do not depend on the flag.
std::string toggling(const std::string &Calls, unsigned Unfolded = 0,
                     const std::string &Callers = R"(
define void @main(ptr %node) {
  %r = call i32 @f(i1 true, ptr %node)
  ret void
}
)",
                     const std::string &Linkage = "") {
  std::string Work;
  for (unsigned I = 0; I != Unfolded; ++I)
    Work += "  store volatile i32 1, ptr @g\n";
  return R"(
@g = external global i32
declare void @use(ptr)
define )" +
         Linkage + R"( i32 @f(i1 %flag, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  br i1 %flag, label %left, label %right
left:
  store volatile i32 1, ptr @g
  br label %both
right:
  store volatile i32 2, ptr @g
  br label %both
both:
)" + Work +
         R"(
  %kind = select i1 %flag, i32 7, i32 9
  %number = zext i1 %flag to i32
  %mine = mul i32 %number, %kind
  %not = xor i1 %flag, true
  %next = load ptr, ptr %node
)" + Calls +
         R"(
exit:
  ret i32 0
}
)" + Callers;
}

const std::string First = "  %q = call i32 @f(i1 %not, ptr %next)\n"
                          "  store volatile i32 %q, ptr @g\n";
const std::string Plain = First + "  ret i32 %mine\n";
const std::string Tail =
    First + "  %r = call i32 @f(i1 %not, ptr %next)\n  ret i32 %r\n";
const std::string Accumulating = First +
                                 "  %r = call i32 @f(i1 %not, ptr %next)\n"
                                 "  %s = add i32 %r, %mine\n  ret i32 %s\n";

TEST(StatesOfferTest, ACopyForEach) {
  const Offered Two(toggling(Plain));
  ASSERT_TRUE(Two.What);
  EXPECT_EQ(Two.What->Kind, Plan::States);
  EXPECT_EQ(Two.What->Copies, 2u);
  EXPECT_EQ(Two.What->Growth, Two.Known.getStates()->getSize());
  EXPECT_EQ(Two.What->Decision.Name, "AutoStates");
}

TEST(StatesOfferTest, OnlyInFrontOfAnInliner) {
  EXPECT_FALSE(Offered(toggling(Plain), 1000, /*InlinerFollows=*/false).What);
}

TEST(StatesOfferTest, GrowthOnBothSidesOfTheLimit) {
  const unsigned Growth = Offered(toggling(Plain)).What->Growth;
  EXPECT_TRUE(Offered(toggling(Plain), Growth).What);
  const Offered Less(toggling(Plain), Growth - 1);
  EXPECT_FALSE(Less.What);
  EXPECT_NE(Less.Why.find("copies for 2 states would add"), std::string::npos);
  // No room at all is nobody's wish for states.
  EXPECT_EQ(Offered(toggling(Plain), 0).Why, "");
}

TEST(StatesOfferTest, SavingsOnBothSidesOfTheLimit) {
  unsigned Unfolded = 0;
  for (; Unfolded != 200 && Offered(toggling(Plain, Unfolded)).What; ++Unfolded)
    EXPECT_GE(
        Offered(toggling(Plain, Unfolded)).Known.getStates()->getSavedShare() *
            100,
        tuning::MinStatesSaved);
  ASSERT_NE(Unfolded, 0u);
  ASSERT_NE(Unfolded, 200u);
  const Offered Less(toggling(Plain, Unfolded));
  EXPECT_LT(Less.Known.getStates()->getSavedShare() * 100,
            tuning::MinStatesSaved);
  EXPECT_NE(Less.Why.find("known arguments would save"), std::string::npos);
}

TEST(StatesOfferTest, LoopsAreNotTakenApart) {
  // A tail call from copy to copy needs no stack.
  EXPECT_TRUE(Offered(toggling(Tail)).What);
  // One whose result is added to does, once it is no loop.
  const Offered Sum(toggling(Accumulating));
  EXPECT_FALSE(Sum.What);
  EXPECT_NE(Sum.Why.find("what becomes a loop would be calls between its"),
            std::string::npos);
}

TEST(StatesOfferTest, VariablesInMemoryForbidTailCalls) {
  std::string InMemory = toggling(Tail);
  InMemory.insert(InMemory.find("  %none ="),
                  "  %v = alloca i32\n  call void @use(ptr %v)\n");
  EXPECT_FALSE(Offered(InMemory).What);
}

TEST(StatesOfferTest, ALoopWithinOneState) {
  // The comparator is the same all along: its copy is the loop.
  std::string Same = toggling(Accumulating);
  for (size_t At; (At = Same.find("i1 %not, ptr")) != std::string::npos;)
    Same.replace(At, 12, "i1 %flag, ptr");
  EXPECT_TRUE(Offered(Same).What);
}

TEST(StatesOfferTest, OneStateForAllIsLeftToConstantPropagation) {
  std::string Same = toggling(Plain);
  for (size_t At; (At = Same.find("i1 %not, ptr")) != std::string::npos;)
    Same.replace(At, 12, "i1 %flag, ptr");
  // Others may call it.
  EXPECT_TRUE(Offered(Same).What);
  Same.replace(Same.find("define  i32 @f"), 14, "define internal i32 @f");
  const Offered Local(Same);
  EXPECT_FALSE(Local.What);
  EXPECT_EQ(Local.Why, "");
  // Somebody in this module calls it with something else.
  EXPECT_TRUE(Offered(Same + R"(
define void @other(i1 %flag, ptr %node) {
  %r = call i32 @f(i1 %flag, ptr %node)
  ret void
}
)")
                  .What);
}

TEST(StatesOfferTest, NothingIsSaidWithoutConstants) {
  const Offered Unknown(toggling(Plain, 0, ""));
  EXPECT_FALSE(Unknown.What);
  EXPECT_EQ(Unknown.Why, "");
}

TEST(StatesOfferTest, AnArgumentOfTooManyValuesIsNamed) {
  const Offered Number(R"(
@g = external global i32
define void @f(i64 %number, ptr %node) {
entry:
  %none = icmp eq ptr %node, null
  br i1 %none, label %exit, label %rec
rec:
  %even = shl i64 %number, 1
  %odd = or i64 %even, 1
  %next = load ptr, ptr %node
  call void @f(i64 %even, ptr %next)
  store volatile i32 1, ptr @g
  call void @f(i64 %odd, ptr %next)
  br label %exit
exit:
  ret void
}
define void @main(ptr %node) {
  call void @f(i64 1, ptr %node)
  ret void
}
)");
  EXPECT_FALSE(Number.What);
  EXPECT_NE(Number.Why.find("'number' takes more than 128 values"),
            std::string::npos);
}

} // namespace
