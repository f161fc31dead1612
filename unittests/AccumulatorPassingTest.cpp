//===- AccumulatorPassingTest.cpp - Sums handed on from call to call ------===//

#include "plugin/rewrite/AccumulatorPassing.h"
#include "TestModule.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// f(n, p), which returns 0 if n is, and %s at the end of \p Rec otherwise.
std::string summing(const std::string &Rec,
                    const std::string &Parameters = "i32 %n, ptr %p") {
  return std::string(R"(
@g = external global i32
declare i32 @other(i32)
declare i32 @__gxx_personality_v0(...)
define i32 @f()") +
         Parameters + R"() personality ptr @__gxx_personality_v0 {
entry:
  %end = icmp eq i32 %n, 0
  br i1 %end, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
)" + Rec +
         R"(
exit:
  %r = phi i32 [ 0, %entry ], [ %s, %last ]
  ret i32 %r
}
)";
}

const std::string Last = "  br label %last\nlast:\n  br label %exit\n";
const std::string Two = "  %a = call i32 @f(i32 %m, ptr %p)\n"
                        "  %b = call i32 @f(i32 %m, ptr %p)\n";

bool canPass(const std::string &Assembly) {
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  return findAccumulation(F, DominatorTree(F)).has_value();
}

/// The operands that the self calls of the function are handed on as sums, in
/// order, and what it returns: "acc" is the accumulator, names are values.
std::string passed(const std::string &Assembly) {
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  const auto Sum = findAccumulation(F, DominatorTree(F));
  if (!Sum)
    return "none";
  Function &Passing = passAccumulator(F, *Sum);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  EXPECT_TRUE(Passing.hasInternalLinkage());
  EXPECT_EQ(Passing.arg_size(), F.arg_size() + 1);
  Passing.getArg(F.arg_size())->setName("acc");
  std::string Told;
  auto Tell = [&Told](const Value *V) {
    if (const auto *Operation = dyn_cast<BinaryOperator>(V)) {
      EXPECT_FALSE(Operation->getOpcode() == Instruction::Add &&
                   Operation->hasNoSignedWrap());
      auto GetName = [](const Value *Operand) {
        return isa<ConstantInt>(Operand)
                   ? std::to_string(cast<ConstantInt>(Operand)->getSExtValue())
                   : Operand->getName().str();
      };
      Told += GetName(Operation->getOperand(0)) + "+" +
              GetName(Operation->getOperand(1)) + " ";
    } else {
      Told += V->getName().str() + " ";
    }
  };
  for (Instruction &I : instructions(Passing)) {
    if (auto *Call = dyn_cast<CallInst>(&I);
        Call && Call->getCalledFunction() == &Passing)
      Tell(*std::prev(Call->arg_end()));
    EXPECT_FALSE(isa<CallBase>(I) &&
                 cast<CallBase>(I).getCalledFunction() == &F);
  }
  // The function itself begins with nothing.
  EXPECT_EQ(F.size(), 1u);
  const auto &Onward = cast<CallInst>(F.getEntryBlock().front());
  EXPECT_EQ(Onward.getCalledFunction(), &Passing);
  return Told;
}

TEST(AccumulatorPassingTest, FromCallToCall) {
  EXPECT_EQ(passed(summing(Two + "  %s = add nsw i32 %a, %b\n" + Last)),
            "acc a.sum ");
  EXPECT_EQ(passed(summing(Two + "  %s = add nsw i32 %b, %a\n" + Last)),
            "acc a.sum ");
}

TEST(AccumulatorPassingTest, WithWhatIsThereBefore) {
  EXPECT_EQ(passed(summing("  %v = load i32, ptr %p\n" + Two +
                           "  %t = add i32 %a, %v\n"
                           "  %s = add i32 %t, %b\n" +
                           Last)),
            "acc+v a.sum ");
  EXPECT_EQ(passed(summing("  %a = call i32 @f(i32 %m, ptr %p)\n"
                           "  %t = add i32 1, %a\n"
                           "  %v = load i32, ptr %p\n"
                           "  %u = add i32 %t, %v\n"
                           "  %b = call i32 @f(i32 %m, ptr %p)\n"
                           "  %s = add i32 %u, %b\n" +
                           Last)),
            "acc+1 a.sum+v ");
}

TEST(AccumulatorPassingTest, WhatComesLaterIsAddedLater) {
  EXPECT_EQ(passed(summing(Two +
                           "  %v = load i32, ptr %p\n"
                           "  %t = add i32 %a, %v\n"
                           "  %s = add i32 %b, %t\n" +
                           Last)),
            "none");
  EXPECT_EQ(passed(summing(Two +
                           "  %v = load i32, ptr %p\n"
                           "  %t = add i32 %a, %b\n"
                           "  %s = add i32 %t, %v\n" +
                           Last)),
            "acc a.sum ");
}

TEST(AccumulatorPassingTest, OnEitherSide) {
  for (const char *Operands : {"%a, %v", "%v, %a"})
    EXPECT_EQ(passed(summing("  %a = call i32 @f(i32 %m, ptr %p)\n"
                             "  %v = load i32, ptr %p\n"
                             "  %t = add i32 " +
                             std::string(Operands) +
                             "\n"
                             "  %b = call i32 @f(i32 %m, ptr %p)\n"
                             "  %s = add i32 %b, %t\n" +
                             Last)),
              "acc a.sum+v ");
}

TEST(AccumulatorPassingTest, AroundALoop) {
  const std::string Loop = R"(
  br label %loop
loop:
  %i = phi i32 [ 0, %rec ], [ %j, %loop ]
  %t = phi i32 [ %m, %rec ], [ %s, %loop ]
  %a = call i32 @f(i32 %i, ptr %p)
  %s = add i32 %t, %a
  %j = add i32 %i, 1
  %more = icmp slt i32 %j, %n
  br i1 %more, label %loop, label %last
last:
  br label %exit
)";
  EXPECT_EQ(passed(summing(Loop)), "t.sum ");
}

TEST(AccumulatorPassingTest, AlongSeveralEdges) {
  // Two from one block bring the same.
  EXPECT_EQ(passed(summing(Two + R"(
  %t = add i32 %a, %b
  switch i32 %m, label %other [ i32 1, label %last
                                i32 2, label %last
                                i32 3, label %exit2 ]
other:
  br label %last
last:
  %s = phi i32 [ %n, %rec ], [ %n, %rec ], [ %t, %other ]
  br label %exit
exit2:
  ret i32 %t
)")),
            "acc a.sum ");
}

TEST(AccumulatorPassingTest, ByOtherOperations) {
  for (const char *Operation : {"mul", "and", "or", "xor"})
    EXPECT_EQ(
        passed(summing(Two + "  %s = " + Operation + " i32 %a, %b\n" + Last)),
        "acc a.sum ");
  for (const char *Operation : {"sub", "shl", "udiv"})
    EXPECT_FALSE(
        canPass(summing(Two + "  %s = " + Operation + " i32 %a, %b\n" + Last)));
  // Not by two.
  EXPECT_FALSE(canPass(summing(Two +
                               "  %t = xor i32 %a, 5\n"
                               "  %s = add i32 %t, %b\n" +
                               Last)));
}

TEST(AccumulatorPassingTest, CallsOfUnusedSumsAreMade) {
  TestModule TM(summing(Two +
                        "  %unused = add i32 %a, 1\n"
                        "  %s = add i32 %b, 2\n" +
                        Last));
  Function &F = TM.function("f");
  const auto Sum = findAccumulation(F, DominatorTree(F));
  ASSERT_TRUE(Sum);
  Function &Passing = passAccumulator(F, *Sum);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  EXPECT_EQ(count_if(instructions(Passing),
                     [](const Instruction &I) { return isa<CallInst>(I); }),
            2);
}

TEST(AccumulatorPassingTest, NotWhatIsUsedElsewhere) {
  const std::string Sum = "  %s = add i32 %a, %b\n" + Last;
  EXPECT_TRUE(canPass(summing(Two + Sum)));
  EXPECT_FALSE(canPass(summing(Two + "  store i32 %a, ptr %p\n" + Sum)));
  EXPECT_FALSE(canPass(summing("  %a = call i32 @f(i32 %m, ptr %p)\n"
                               "  %c = call i32 @other(i32 %a)\n"
                               "  %b = call i32 @f(i32 %m, ptr %p)\n" +
                               Sum)));
  EXPECT_FALSE(canPass(summing(Two + "  call i32 @f(i32 %m, ptr %p)\n" + Sum)));
}

TEST(AccumulatorPassingTest, NotByCallsOfAnotherKind) {
  const std::string Sum = "  %s = add i32 %a, %b\n" + Last;
  EXPECT_FALSE(
      canPass(summing("  %a = call i32 (i32, ...) @f(i32 %m)\n"
                      "  %b = call i32 (i32, ...) @f(i32 %m, i32 1)\n" +
                          Sum,
                      "i32 %n, ...")));
  EXPECT_FALSE(canPass(
      summing("  %a = call i32 @f(i32 %m, ptr %p)\n"
              "  %b = call i32 @f(i32 %m, ptr %p) [ \"deopt\"(i32 1) ]\n" +
              Sum)));
  // Nothing reaches this one.
  EXPECT_FALSE(canPass(summing(Two + Sum +
                               "dead:\n"
                               "  %c = call i32 @f(i32 %m, ptr %p)\n"
                               "  %d = add i32 %d, %c\n"
                               "  br label %dead\n")));
}

TEST(AccumulatorPassingTest, NotMoreArgumentsThanRegisters) {
  auto WithParameters = [](StringRef More) {
    std::string Calls;
    for (const char *Name : {"a", "b"})
      Calls += std::string("  %") + Name + " = call i32 @f(i32 %m" +
               More.str() + ")\n";
    return summing(Calls + "  %s = add i32 %a, %b\n" + Last,
                   "i32 %n" + More.str());
  };
  EXPECT_TRUE(canPass(WithParameters(", i32 %b1, i32 %c, i32 %d, i32 %e")));
  EXPECT_FALSE(
      canPass(WithParameters(", i32 %b1, i32 %c, i32 %d, i32 %e, i32 %h")));
}

TEST(AccumulatorPassingTest, NotFromCallsThatMayThrow) {
  EXPECT_FALSE(canPass(summing(R"(
  %a = call i32 @f(i32 %m, ptr %p)
  %b = invoke i32 @f(i32 %m, ptr %p) to label %on unwind label %pad
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
on:
  %s = add i32 %a, %b
)" + Last)));
  // Nor behind an edge that such a call's result comes along.
  EXPECT_FALSE(canPass(summing(Two + R"(
  %t = add i32 %a, %b
  br i1 %end, label %last, label %more
more:
  %o = invoke i32 @other(i32 %m) to label %last unwind label %pad
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
last:
  %s = phi i32 [ %t, %rec ], [ %o, %more ]
  br label %exit
)")));
  // Nothing stands in front of what chooses a handler.
  EXPECT_FALSE(canPass(summing(Two + R"(
  %s = add i32 %a, %b
  %o = invoke i32 @other(i32 %m) to label %more unwind label %choose
more:
  %o2 = invoke i32 @other(i32 %m) to label %last unwind label %clean
choose:
  %choice = catchswitch within none [label %handler] unwind label %clean
handler:
  %h = catchpad within %choice []
  catchret from %h to label %last
clean:
  %t = phi i32 [ %s, %more ], [ %n, %choose ]
  %c = cleanuppad within none []
  cleanupret from %c unwind to caller
last:
  br label %exit
)")));
}

TEST(AccumulatorPassingTest, NothingIsPromisedOfParts) {
  std::string Assembly =
      summing("  %a = call noundef signext i32 @f(i32 signext %m, ptr %p)\n"
              "  %b = call noundef i32 @f(i32 returned %m, ptr %p), !range !0\n"
              "  %s = add i32 %a, %b\n" +
                  Last,
              "i32 returned %n, ptr %p");
  Assembly.replace(Assembly.find("define i32"), 10, "define noundef i32");
  TestModule TM(Assembly + "!0 = !{i32 0, i32 9}\n");
  Function &F = TM.function("f");
  const auto Sum = findAccumulation(F, DominatorTree(F));
  ASSERT_TRUE(Sum);
  Function &Passing = passAccumulator(F, *Sum);
  EXPECT_FALSE(verifyModule(TM.module(), &errs()));
  EXPECT_FALSE(Passing.hasRetAttribute(Attribute::NoUndef));
  EXPECT_FALSE(Passing.hasParamAttribute(0, Attribute::Returned));
  EXPECT_TRUE(F.hasRetAttribute(Attribute::NoUndef));
  for (const Instruction &I : instructions(Passing))
    if (const auto *Call = dyn_cast<CallInst>(&I)) {
      EXPECT_FALSE(Call->hasRetAttr(Attribute::NoUndef));
      EXPECT_FALSE(Call->paramHasAttr(0, Attribute::Returned));
      EXPECT_FALSE(Call->hasMetadata());
      // How they are passed stays as it was.
      const bool IsFirst = Call->getName() == "a.sum";
      EXPECT_EQ(Call->hasRetAttr(Attribute::SExt), IsFirst);
      EXPECT_EQ(Call->paramHasAttr(0, Attribute::SExt), IsFirst);
    }
}

} // namespace
