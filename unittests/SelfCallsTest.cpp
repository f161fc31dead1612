//===- SelfCallsTest.cpp - Kinds of self calls ----------------------------===//

#include "../plugin/SelfCalls.h"
#include "TestModule.h"

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

} // namespace
