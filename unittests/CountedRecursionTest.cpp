//===- CountedRecursionTest.cpp - Recursion that counts -------------------===//

#include "plugin/rewrite/CountedRecursion.h"
#include "TestModule.h"
#include "plugin/recursion/SelfCalls.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

const char *const Declarations = R"(
declare void @exit()
declare i1 @more()
declare i32 @__gxx_personality_v0(...)
)";

/// The values of the counter of @f, from the last activation upwards, as signed
/// numbers; empty if it has none.
std::vector<int64_t> valuesOf(const std::string &Assembly,
                              bool IsComplete = true, unsigned MaxLevels = 3) {
  TestModule TM(Declarations + Assembly);
  Function &F = TM.function("f");
  const auto Counter = findRecursionCounter(F, findSelfCalls(F), MaxLevels,
                                            TM.scalarEvolution(F));
  if (!Counter)
    return {};
  EXPECT_EQ(Counter->Counter->getName(), "n");
  EXPECT_EQ(Counter->IsComplete, IsComplete);
  std::vector<int64_t> Values;
  for (ConstantInt *Value : Counter->Values) {
    EXPECT_EQ(Value->getType(), Counter->Counter->getType());
    Values.push_back(Value->getSExtValue());
  }
  return Values;
}

/// f of %n of \p Type, which ends in `%end`, a value of \p Test.  Two self
/// calls with the argument \p Next.
std::string counting(const std::string &Test,
                     const std::string &Next = "%m = sub i32 %n, 1",
                     const std::string &Type = "i32") {
  const std::string Call = "  call void @f(i32 %x, " + Type + " %m)\n";
  return "define void @f(i32 %x, " + Type + R"( %n) {
entry:
  )" + Test +
         R"(
  br i1 %end, label %exit, label %rec
rec:
  )" + Next +
         "\n" + Call + Call + R"(
  br label %exit
exit:
  ret void
}
)";
}

using Values = std::vector<int64_t>;

TEST(CountedRecursionTest, DownToOneValue) {
  EXPECT_EQ(valuesOf(counting("%end = icmp eq i32 %n, 0")),
            Values({0, 1, 2, 3}));
  EXPECT_EQ(valuesOf(counting("%end = icmp eq i32 -7, %n")),
            Values({-7, -6, -5, -4}));
}

TEST(CountedRecursionTest, UpToOneValue) {
  EXPECT_EQ(
      valuesOf(counting("%end = icmp eq i32 %n, 20", "%m = add nsw i32 %n, 1")),
      Values({20, 19, 18, 17}));
}

TEST(CountedRecursionTest, DownIntoARange) {
  EXPECT_EQ(valuesOf(counting("%end = icmp slt i32 %n, 1")),
            Values({0, 1, 2, 3}));
  EXPECT_EQ(valuesOf(counting("%end = icmp sge i32 4, %n")),
            Values({4, 5, 6, 7}));
  EXPECT_EQ(valuesOf(counting("%end = icmp ult i32 %n, 2")),
            Values({1, 2, 3, 4}));
}

TEST(CountedRecursionTest, UpIntoARange) {
  EXPECT_EQ(
      valuesOf(counting("%end = icmp sgt i32 %n, 9", "%m = sub i32 %n, -1")),
      Values({10, 9, 8, 7}));
}

TEST(CountedRecursionTest, TheOtherSideOfTheBranchEnds) {
  std::string Other = counting("%end = icmp ne i32 %n, 5");
  Other.replace(Other.find("%exit, label %rec"), 17, "%rec, label %exit");
  EXPECT_EQ(valuesOf(Other), Values({5, 6, 7, 8}));
}

TEST(CountedRecursionTest, ARangeOfWrappingValuesHasOneWayIn) {
  // From 4 upwards, all the way around to -1.
  EXPECT_EQ(valuesOf(counting("%end = icmp ugt i32 %n, 3")),
            Values({-1, 0, 1, 2}));
  EXPECT_EQ(valuesOf(counting("%end = icmp ne i32 %n, 0")), Values({-1, 0}));
}

TEST(CountedRecursionTest, WidenedBeforeItIsCompared) {
  EXPECT_EQ(valuesOf(counting("%w = sext i8 %n to i32\n"
                              "  %end = icmp eq i32 %w, -3",
                              "%m = add i8 %n, -1", "i8")),
            Values({-3, -2, -1, 0}));
  EXPECT_EQ(valuesOf(counting("%w = zext i8 %n to i32\n"
                              "  %end = icmp ugt i32 %w, 252",
                              "%m = add i8 %n, 1", "i8")),
            Values({-3, -4, -5, -6}));
}

TEST(CountedRecursionTest, NoneOrAllValuesOfANarrowTypeEnd) {
  EXPECT_EQ(valuesOf(counting("%w = zext i8 %n to i32\n"
                              "  %end = icmp eq i32 %w, 256",
                              "%m = add i8 %n, -1", "i8")),
            Values());
  EXPECT_EQ(valuesOf(counting("%w = zext i8 %n to i32\n"
                              "  %end = icmp ult i32 %w, 256",
                              "%m = add i8 %n, -1", "i8")),
            Values({0}));
}

TEST(CountedRecursionTest, NotIfTheStepIsNotOne) {
  for (const char *Next : {"%m = sub i32 %n, 2", "%m = add i32 %n, 0",
                           "%m = add i32 %n, %x", "%m = lshr i32 %n, 1"})
    EXPECT_EQ(valuesOf(counting("%end = icmp eq i32 %n, 0", Next)), Values())
        << Next;
}

TEST(CountedRecursionTest, NotIfSomethingElseIsTested) {
  for (const char *Test :
       {"%end = icmp eq i32 %x, 0", "%end = icmp eq i32 %n, %x",
        "%l = and i32 %n, 3\n  %end = icmp eq i32 %l, 0",
        "%end = call i1 @more()"})
    EXPECT_EQ(valuesOf(counting(Test)), Values()) << Test;
}

TEST(CountedRecursionTest, NotIfTheTestMayNotBeReached) {
  EXPECT_EQ(valuesOf(counting("call void @exit()\n"
                              "  %end = icmp eq i32 %n, 0")),
            Values());
}

TEST(CountedRecursionTest, AtMostTheLevelsAskedFor) {
  EXPECT_EQ(valuesOf(counting("%end = icmp eq i32 %n, 0"), true, 1),
            Values({0, 1}));
  EXPECT_EQ(valuesOf(counting("%end = icmp eq i32 %n, 0"), true, 0),
            Values({0}));
}

/// f with a switch of the cases \p Cases, and self calls \p Body.
std::string switching(const std::string &Cases, const std::string &Body) {
  return R"(
define void @f(i32 %n) personality ptr @__gxx_personality_v0 {
entry:
  switch i32 %n, label %rec [ )" +
         Cases + R"( ]
end:
  ret void
rec:
  %m = add i32 %n, -1
)" + Body +
         "}\n";
}

const std::string Call = "  call void @f(i32 %m)\n";

TEST(CountedRecursionTest, CasesOfASwitch) {
  const std::string Twice = Call + Call + "  ret void\n";
  EXPECT_EQ(valuesOf(switching("i32 5, label %end", Twice)),
            Values({5, 6, 7, 8}));
  // Above 3 there is more than between 3 and 1.
  EXPECT_EQ(valuesOf(switching("i32 1, label %end i32 3, label %end", Twice)),
            Values({3, 4, 5, 6}));
  // Above 9 there is more than between 9 and 7.
  EXPECT_EQ(valuesOf(switching("i32 7, label %end i32 9, label %end", Twice)),
            Values({9, 10, 11, 12}));
}

TEST(CountedRecursionTest, NotIfACaseRecurses) {
  EXPECT_EQ(valuesOf(switching("i32 0, label %end i32 1, label %rec",
                               Call + Call + "  ret void\n")),
            Values({0, 1, 2, 3}));
  EXPECT_EQ(valuesOf(switching("i32 0, label %end i32 1, label %other",
                               Call + "  ret void\nother:\n" +
                                   "  call void @f(i32 0)\n  ret void\n")),
            Values());
}

TEST(CountedRecursionTest, NotIfItCallsItselfOnce) {
  EXPECT_EQ(valuesOf(switching("i32 0, label %end", Call + "  ret void\n")),
            Values());
}

TEST(CountedRecursionTest, IncompleteIfACallMayBeLeftOut) {
  EXPECT_EQ(valuesOf(switching("i32 0, label %end", Call + R"(
  %c = call i1 @more()
  br i1 %c, label %on, label %end
on:
)" + Call + "  ret void\n"),
                     /*IsComplete=*/false),
            Values({0, 1, 2, 3}));
  EXPECT_EQ(valuesOf(switching("i32 0, label %end", R"(
  %c = call i1 @more()
  br i1 %c, label %on, label %other
on:
)" + Call + "  ret void\nother:\n" + Call + "  ret void\n"),
                     /*IsComplete=*/false),
            Values({0, 1, 2, 3}));
}

TEST(CountedRecursionTest, CompleteIfOnlyAnExceptionLeavesACallOut) {
  EXPECT_EQ(valuesOf(switching("i32 0, label %end", R"(
  invoke void @f(i32 %m) to label %on unwind label %pad
on:
)" + Call + R"(  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
)")),
            Values({0, 1, 2, 3}));
}

} // namespace
