//===- SelfCallsTest.cpp - Kinds of self calls ----------------------------===//

#include "plugin/recursion/SelfCalls.h"
#include "TestModule.h"
#include "plugin/recursion/Unrolling.h"
#include "llvm/Analysis/PostDominators.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// A function @f whose block `rec` is \p Body; `%r` is a call of itself.
std::string withBody(const std::string &Body) {
  return R"(
declare void @other()
declare i32 @__gxx_personality_v0(...)
define i32 @f(i32 %n, ptr %p) personality ptr @__gxx_personality_v0 {
entry:
  %done = icmp eq i32 %n, 0
  br i1 %done, label %exit, label %rec
rec:
)" + Body +
         "\n}\n";
}

const char *const ExitOfN = "exit:\n  ret i32 %n\n";
const char *const ExitOfPhi = R"(
exit:
  %x = phi i32 [ 1, %entry ], [ %v, %rec ]
  ret i32 %x
)";
const std::string Call = "  %r = call i32 @f(i32 %n, ptr %p)\n";

enum Kind { Other, Tail, Accumulating };

Kind kindOfLastCall(const std::string &Body) {
  TestModule TM(withBody(Body));
  auto Calls = findSelfCalls(TM.function("f"));
  EXPECT_FALSE(Calls.empty());
  const CallBase &Last = *Calls.back();
  EXPECT_FALSE(isTailCall(Last) && isAccumulating(Last));
  return isTailCall(Last) ? Tail : isAccumulating(Last) ? Accumulating : Other;
}

TEST(SelfCallsTest, CallsAreFoundInTheOrderOfTheBody) {
  TestModule TM(R"(
declare i32 @__gxx_personality_v0(...)
define void @f(ptr %p, ptr %q) personality ptr @__gxx_personality_v0 {
entry:
  call void @f(ptr %p, ptr @f)
  call void %p(ptr @f, ptr @f)
  call void @g(ptr @f)
  invoke void @f(ptr %q, ptr %p) to label %done unwind label %pad
done:
  call void @f(ptr %q, ptr %q)
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}
define void @g(ptr %p) {
  call void @f(ptr %p, ptr %p)
  ret void
}
)");
  Function &F = TM.function("f"), &G = TM.function("g");
  auto Calls = findSelfCalls(F);
  ASSERT_EQ(Calls.size(), 3u);
  EXPECT_TRUE(isa<CallInst>(Calls[0]));
  EXPECT_TRUE(isa<InvokeInst>(Calls[1]));
  EXPECT_EQ(Calls[2]->getArgOperand(0), F.getArg(1));
  EXPECT_EQ(findCalls(F, G).size(), 1u);
  EXPECT_EQ(findCalls(G, F).size(), 1u);
  EXPECT_TRUE(findSelfCalls(G).empty());
}

TEST(SelfCallsTest, TailCallsAreReturnedAtOnce) {
  EXPECT_EQ(kindOfLastCall(Call + "  ret i32 %r\n" + ExitOfN), Tail);
  EXPECT_EQ(kindOfLastCall("  %v = call i32 @f(i32 %n, ptr %p)\n"
                           "  br label %exit\n" +
                           std::string(ExitOfPhi)),
            Tail);
}

TEST(SelfCallsTest, WhereScopesEndEmptyBlocksStandInBetween) {
  const std::string Before = Call + "  br label %inner\ninner:\n";
  EXPECT_EQ(kindOfLastCall(Before +
                           "  br label %outer\nouter:\n"
                           "  ret i32 %r\n" +
                           ExitOfN),
            Tail);
  EXPECT_EQ(kindOfLastCall(Before +
                           "  %v = phi i32 [ %r, %rec ]\n"
                           "  br label %outer\nouter:\n"
                           "  %w = phi i32 [ %v, %inner ]\n"
                           "  ret i32 %w\n" +
                           ExitOfN),
            Tail);
  EXPECT_EQ(kindOfLastCall(Before +
                           "  %v = phi i32 [ %n, %rec ]\n"
                           "  br label %outer\nouter:\n"
                           "  ret i32 %v\n" +
                           ExitOfN),
            Other);
  EXPECT_EQ(kindOfLastCall(Before +
                           "  store i32 0, ptr %p\n"
                           "  br label %outer\nouter:\n"
                           "  ret i32 %r\n" +
                           ExitOfN),
            Other);
  // Never to return.
  EXPECT_EQ(kindOfLastCall(Before + "  br label %inner\n" + ExitOfN), Other);
}

TEST(SelfCallsTest, NoTailCallIfAnythingElseIsReturned) {
  EXPECT_EQ(kindOfLastCall(Call + "  ret i32 %n\n" + ExitOfN), Other);
  EXPECT_EQ(kindOfLastCall(Call + "  br label %exit\n" + ExitOfN), Other);
  EXPECT_EQ(kindOfLastCall(Call + "  %v = sub i32 3, 2\n  br label %exit\n" +
                           ExitOfPhi),
            Other);
}

TEST(SelfCallsTest, NoTailCallIfAnythingIsDoneBehind) {
  EXPECT_EQ(
      kindOfLastCall(Call + "  store i32 0, ptr %p\n  ret i32 %r\n" + ExitOfN),
      Other);
  EXPECT_EQ(
      kindOfLastCall(Call + "  call void @other()\n  ret i32 %r\n" + ExitOfN),
      Other);
  EXPECT_EQ(kindOfLastCall(Call +
                           "  br i1 %done, label %a, label %exit\n"
                           "a:\n  ret i32 %r\n" +
                           ExitOfN),
            Other);
}

TEST(SelfCallsTest, AnInvokeIsNeverATailCall) {
  EXPECT_EQ(kindOfLastCall(R"(
  %r = invoke i32 @f(i32 %n, ptr %p) to label %a unwind label %pad
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
a:
  ret i32 %r
)" + std::string(ExitOfN)),
            Other);
}

TEST(SelfCallsTest, AccumulatingCallsAreOperandsOfWhatIsReturned) {
  for (const char *Operation : {"add", "mul", "and", "or", "xor"}) {
    const std::string Value = std::string(Operation) + " i32 ";
    EXPECT_EQ(kindOfLastCall(Call + "  %v = " + Value + "%n, %r\n" +
                             "  ret i32 %v\n" + ExitOfN),
              Accumulating)
        << Operation;
    EXPECT_EQ(kindOfLastCall(Call + "  %v = " + Value + "%r, 7\n" +
                             "  br label %exit\n" + ExitOfPhi),
              Accumulating)
        << Operation;
  }
}

TEST(SelfCallsTest, OnlyOrderlessOperationsAccumulate) {
  for (const char *Operation : {"sub", "shl", "udiv", "srem"})
    EXPECT_EQ(kindOfLastCall(Call + "  %v = " + Operation +
                             " i32 %n, %r\n  ret i32 %v\n" + ExitOfN),
              Other)
        << Operation;
}

TEST(SelfCallsTest, AccumulatingCallsHaveOneUse) {
  EXPECT_EQ(
      kindOfLastCall(Call + "  %v = mul i32 %r, %r\n  ret i32 %v\n" + ExitOfN),
      Other);
  EXPECT_EQ(kindOfLastCall(Call +
                           "  %v = add i32 %r, %n\n"
                           "  %w = add i32 %v, 1\n  ret i32 %w\n" +
                           ExitOfN),
            Other);
  EXPECT_EQ(kindOfLastCall(Call +
                           "  %w = add i32 %n, 1\n"
                           "  %v = add i32 %r, %w\n  ret i32 %v\n" +
                           ExitOfN),
            Other);
}

/// A function @f of two arguments that makes one call, and then, or else, or
/// behind a test of its own, another one.
std::string withTwoCalls(const std::string &Body) {
  return "define void @f(i32 %n, i1 %c) {\nentry:\n" + Body + "}\n";
}

const std::string OneAfterTheOther = withTwoCalls(R"(
  br i1 %c, label %first, label %exit
first:
  call void @f(i32 %n, i1 %c)
  call void @f(i32 %n, i1 true)
  br label %exit
exit:
  ret void
)");
const std::string OneOrTheOther = withTwoCalls(R"(
  br i1 %c, label %first, label %second
first:
  call void @f(i32 %n, i1 %c)
  br label %exit
second:
  call void @f(i32 %n, i1 true)
  br label %exit
exit:
  ret void
)");
const std::string EachWithItsTest = withTwoCalls(R"(
  br i1 %c, label %first, label %next
first:
  call void @f(i32 %n, i1 %c)
  br label %next
next:
  %d = icmp eq i32 %n, 0
  br i1 %d, label %second, label %exit
second:
  call void @f(i32 %n, i1 true)
  br label %exit
exit:
  ret void
)");
const std::string SecondWithoutTest = withTwoCalls(R"(
  br i1 %c, label %first, label %second
first:
  call void @f(i32 %n, i1 %c)
  br label %second
second:
  call void @f(i32 %n, i1 true)
  ret void
)");

bool callsExcludeEachOther(const std::string &Assembly) {
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  return excludeEachOther(findSelfCalls(F), TM.dominatorTree(F));
}

bool callsAreTestedOneByOne(const std::string &Assembly) {
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  return areTestedOneByOne(findSelfCalls(F), TM.dominatorTree(F),
                           PostDominatorTree(F));
}

TEST(SelfCallsTest, CallsInDifferentArmsExcludeEachOther) {
  EXPECT_TRUE(callsExcludeEachOther(OneOrTheOther));
  EXPECT_FALSE(callsExcludeEachOther(OneAfterTheOther));
  EXPECT_FALSE(callsExcludeEachOther(EachWithItsTest));
}

TEST(SelfCallsTest, ArmsOfALoopDoNotExcludeEachOther) {
  EXPECT_FALSE(callsExcludeEachOther(withTwoCalls(R"(
  br label %loop
loop:
  br i1 %c, label %first, label %second
first:
  call void @f(i32 %n, i1 %c)
  br label %loop
second:
  call void @f(i32 %n, i1 true)
  br label %loop
)")));
}

TEST(SelfCallsTest, OneCallExcludesNothing) {
  EXPECT_FALSE(callsExcludeEachOther(withTwoCalls(R"(
  call void @f(i32 %n, i1 %c)
  ret void
)")));
}

TEST(SelfCallsTest, CallsWithATestEachAreTestedOneByOne) {
  EXPECT_TRUE(callsAreTestedOneByOne(EachWithItsTest));
  EXPECT_FALSE(callsAreTestedOneByOne(SecondWithoutTest));
  // The second one is made whenever the first one is.
  EXPECT_FALSE(callsAreTestedOneByOne(OneAfterTheOther));
  // One test for both.
  EXPECT_FALSE(callsAreTestedOneByOne(OneOrTheOther));
}

TEST(SelfCallsTest, ArgumentsAreSteppedWhereOneCallChangesThem) {
  TestModule TM(R"(
define void @f(i32 %a, i32 %b, i32 %c) {
  %d = sub i32 %a, 1
  call void @f(i32 %d, i32 %b, i32 %c)
  call void @f(i32 %a, i32 %b, i32 0)
  ret void
}
define void @swap(i32 %a, i32 %b) {
  call void @swap(i32 %b, i32 %a)
  ret void
}
)");
  Function &F = TM.function("f"), &Swap = TM.function("swap");
  EXPECT_EQ(countSteppedArguments(F, findSelfCalls(F)), 2u);
  EXPECT_EQ(countSteppedArguments(Swap, findSelfCalls(Swap)), 2u);
}

TEST(SelfCallsTest, DependenceOnAResultIsFollowedAFewOperations) {
  TestModule TM(R"(
define i32 @f(i32 %n) {
  %r = call i32 @f(i32 %n)
  %one = add i32 %r, %n
  %two = add i32 %n, %one
  %three = add i32 %two, 1
  %four = add i32 %three, 1
  %none = add i32 %n, 1
  ret i32 %four
}
)");
  Function &F = TM.function("f");
  const auto Calls = findSelfCalls(F);
  auto Depends = [&](StringRef Name) {
    return dependsOnResult(TestModule::find(F, Name), Calls);
  };
  EXPECT_TRUE(Depends("r"));
  EXPECT_TRUE(Depends("one"));
  EXPECT_TRUE(Depends("three"));
  EXPECT_FALSE(Depends("four"));
  EXPECT_FALSE(Depends("none"));
  EXPECT_FALSE(dependsOnResult(F.getArg(0), Calls));
}

bool hasTailLoop(const std::string &InFrontOfLoop) {
  TestModule TM("define void @f(i32 %n, ptr %p) {\n" + InFrontOfLoop + R"(
  br label %loop
loop:
  %i = phi i32 [ %n, %front ], [ %j, %loop ]
  %j = sub i32 %i, 1
  %done = icmp eq i32 %j, 0
  br i1 %done, label %exit, label %loop
exit:
  ret void
}
)");
  Function &F = TM.function("f");
  const Loop *L = findTailLoop(F, TM.loopInfo(F));
  EXPECT_TRUE(!L || L->getHeader()->getName() == "loop");
  return L;
}

TEST(SelfCallsTest, ATailLoopIsAllThatAFunctionIs) {
  EXPECT_TRUE(hasTailLoop("front:"));
  EXPECT_FALSE(hasTailLoop("front:\n  store i32 0, ptr %p"));
  EXPECT_FALSE(hasTailLoop("entry:\n  br label %front\nfront:"));
}

TEST(SelfCallsTest, AShortLoopMakesAFewTripsThatAreKnown) {
  auto IsShort = [](const std::string &Trips) {
    TestModule TM("define void @f(i32 %n) {\nentry:\n  br label %loop\n"
                  "loop:\n"
                  "  %i = phi i32 [ 0, %entry ], [ %j, %loop ]\n"
                  "  call void @f(i32 %i)\n"
                  "  %j = add i32 %i, 1\n"
                  "  %more = icmp ult i32 %j, " +
                  Trips +
                  "\n  br i1 %more, label %loop, label %exit\n"
                  "exit:\n  ret void\n}\n");
    Function &F = TM.function("f");
    return isInShortLoop(*findSelfCalls(F).front(), TM.loopInfo(F),
                         TM.scalarEvolution(F));
  };
  EXPECT_FALSE(IsShort("1"));
  EXPECT_TRUE(IsShort("2"));
  EXPECT_TRUE(IsShort("16"));
  EXPECT_FALSE(IsShort("17"));
  EXPECT_FALSE(IsShort("%n"));
}

} // namespace
