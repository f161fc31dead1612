//===- RecursionDepthEstimatorTest.cpp - How deep does it recurse? --------===//
///
/// \file
/// The estimator's answers, one shape of recursion per test.  A depth counts
/// activations, the one that does not recurse included.
///
//===----------------------------------------------------------------------===//

#include "host/RecursionDepthEstimator.h"
#include "TestModule.h"
#include "llvm/ADT/Twine.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"

using namespace llvm;
using namespace llvm::unittest;

namespace {

/// What the estimator says about @f in a module: one "(shallowest, deepest)"
/// per recursive call, "null" where it does not know, "cannot" if it does not
/// judge @f, and its reason if it declines.
std::string estimate(const Twine &Assembly) {
  TestModule TM(Assembly.str());
  Function &F = TM.function("f");
  ScalarEvolution &SE = TM.scalarEvolution(F);
  RecursionDepthEstimator Estimator(&F, &SE, &TM.dominatorTree(F));
  std::string Text;
  raw_string_ostream OS(Text);
  if (!Estimator.canEstimateRecursionDepth()) {
    OS << "cannot";
    if (!Estimator.getDeclineReason().empty())
      OS << ": " << Estimator.getDeclineReason();
    return Text;
  }
  EXPECT_TRUE(Estimator.getDeclineReason().empty());
  for (CallInst *Call : Estimator.getCallSites()) {
    auto [First, Second] = Estimator.identifyRecursionDepthForCallSite(Call);
    if (!First || !Second) {
      EXPECT_EQ(First, Second);
      OS << "null";
      continue;
    }
    OS << "(" << cast<SCEVConstant>(First)->getAPInt() << ", "
       << cast<SCEVConstant>(Second)->getAPInt() << ")";
  }
  return Text;
}

/// `f(Type n)` that recurses with %next, which \p Step computes, unless \p
/// Guard makes %stop true; entered with \p Start.
std::string estimateSteps(StringRef Type, StringRef Guard, StringRef Step,
                          StringRef Start) {
  return estimate("define void @f(" + Type + " %n) {\n  " + Guard +
                  "\n  br i1 %stop, label %leaf, label %more\n"
                  "more:\n  " +
                  Step + "\n  call void @f(" + Type +
                  " %next)\n  ret void\n"
                  "leaf:\n  ret void\n}\n"
                  "define void @main() {\n  call void @f(" +
                  Type + " " + Start + ")\n  ret void\n}\n");
}

TEST(RecursionDepthEstimatorTest, CountsDown) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                          "%next = sub i32 %n, 1", "5"),
            "(6, 6)");
}

TEST(RecursionDepthEstimatorTest, CountsUp) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 6",
                          "%next = add i32 %n, 1", "0"),
            "(7, 7)");
}

TEST(RecursionDepthEstimatorTest, StepsByConstants) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp sgt i32 %n, 10",
                          "%next = add i32 %n, 3", "0"),
            "(5, 5)");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp ugt i32 %n, 100",
                          "%next = mul i32 %n, 3", "2"),
            "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, DividesAndShifts) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp ult i32 %n, 2",
                          "%next = udiv i32 %n, 2", "125"),
            "(7, 7)");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                          "%next = lshr i32 %n, 3", "4096"),
            "(6, 6)");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, -1",
                          "%next = ashr i32 %n, 2", "-100"),
            "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, EveryPredicate) {
  const std::pair<const char *, const char *> Cases[] = {
      {"eq i32 %n, 4", "(5, 5)"},  {"ne i32 %n, 0", "(2, 2)"},
      {"ugt i32 %n, 4", "(6, 6)"}, {"uge i32 %n, 4", "(5, 5)"},
      {"ult i32 %n, 1", "(1, 1)"}, {"ule i32 4, %n", "(5, 5)"},
      {"sgt i32 %n, 4", "(6, 6)"}, {"sge i32 %n, 4", "(5, 5)"},
      {"slt i32 4, %n", "(6, 6)"}, {"sle i32 %n, 0", "(1, 1)"},
  };
  for (auto [Predicate, Expected] : Cases)
    EXPECT_EQ(estimateSteps("i32", (Twine("%stop = icmp ") + Predicate).str(),
                            "%next = add i32 %n, 1", "0"),
              Expected)
        << Predicate;
}

TEST(RecursionDepthEstimatorTest, Widths) {
  for (StringRef Type : {"i8", "i16", "i32", "i64", "i128"})
    EXPECT_EQ(estimateSteps(Type, ("%stop = icmp eq " + Type + " %n, 0").str(),
                            ("%next = add " + Type + " %n, -1").str(), "3"),
              "(4, 4)")
        << Type.str();
}

TEST(RecursionDepthEstimatorTest, CastsBetweenWidths) {
  EXPECT_EQ(estimateSteps("i8",
                          "%w = sext i8 %n to i128\n"
                          "  %stop = icmp slt i128 %w, -2",
                          "%x = trunc i128 %w to i64\n  %y = add i64 %x, -1\n"
                          "  %next = trunc i64 %y to i8",
                          "1"),
            "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, WrapsAround) {
  EXPECT_EQ(estimateSteps("i8", "%stop = icmp eq i8 %n, 2",
                          "%next = add i8 %n, 1", "253"),
            "(6, 6)");
}

TEST(RecursionDepthEstimatorTest, StepsThatDoNotEnd) {
  // The same arguments again, a cycle of two, and a count beyond the bound.
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 9",
                          "%next = and i32 %n, 7", "5"),
            "null");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 9",
                          "%next = xor i32 %n, 1", "5"),
            "null");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 32",
                          "%next = add i32 %n, 1", "0"),
            "null");
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 31",
                          "%next = add i32 %n, 1", "0"),
            "(32, 32)");
}

TEST(RecursionDepthEstimatorTest, SelectsAndFreezes) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                          "%odd = trunc i32 %n to i1\n"
                          "  %less = sub i32 %n, 1\n"
                          "  %half = udiv i32 %n, 2\n"
                          "  %next = select i1 %odd, i32 %less, i32 %half",
                          "12"),
            "(6, 6)");
}

TEST(RecursionDepthEstimatorTest, GuardedByASwitch) {
  EXPECT_EQ(estimate("define void @f(i32 %n) {\n"
                     "  switch i32 %n, label %more [ i32 0, label %leaf\n"
                     "                               i32 -1, label %leaf ]\n"
                     "more:\n  %next = sub i32 %n, 2\n"
                     "  call void @f(i32 %next)\n  ret void\n"
                     "leaf:\n  ret void\n}\n"
                     "define void @main() {\n  call void @f(i32 7)\n"
                     "  ret void\n}\n"),
            "(5, 5)");
}

/// `f(i32 n, i32 m)` that stops at %a, or else at %b; with %n - 1 and \p Other
/// as the arguments of the recursive call, and entered by \p Entries.
std::string estimateTwo(StringRef A, StringRef B, StringRef Other,
                        StringRef Entries) {
  return estimate(
      "@p = global i1 false\n"
      "define void @f(i32 %n, i32 %m) {\n  %a = " +
      A + "\n  br i1 %a, label %leaf, label %other\nother:\n  %b = " + B +
      "\n  br i1 %b, label %leaf, label %more\n"
      "more:\n  %less = sub i32 %n, 1\n  %up = add i32 %m, 1\n"
      "  call void @f(i32 %less, i32 " +
      Other +
      ")\n  ret void\nleaf:\n  ret void\n}\n"
      "define void @main(i32 %x) {\n" +
      Entries + "  ret void\n}\n");
}

TEST(RecursionDepthEstimatorTest, SeveralGuardsTheFirstToTurnAwayCounts) {
  EXPECT_EQ(estimateTwo("icmp eq i32 %n, 0", "icmp eq i32 %m, 3", "%up",
                        "  call void @f(i32 9, i32 0)\n"),
            "(4, 4)");
}

TEST(RecursionDepthEstimatorTest, AGuardOnMemoryIsPassed) {
  EXPECT_EQ(estimateTwo("load i1, ptr @p", "icmp eq i32 %n, 0", "%m",
                        "  call void @f(i32 2, i32 0)\n"),
            "(3, 3)");
}

TEST(RecursionDepthEstimatorTest, AnUnknownArgumentIsPassedOn) {
  EXPECT_EQ(estimateTwo("icmp eq i32 %m, 77", "icmp eq i32 %n, 0", "%m",
                        "  call void @f(i32 2, i32 %x)\n"),
            "(3, 3)");
}

TEST(RecursionDepthEstimatorTest, OnlyTheUnknownArgumentGuards) {
  EXPECT_EQ(estimateTwo("icmp eq i32 %m, 77", "icmp eq i32 %m, 78", "%up",
                        "  call void @f(i32 2, i32 %x)\n"),
            "null");
}

TEST(RecursionDepthEstimatorTest, SeveralOutsideCalls) {
  EXPECT_EQ(estimateTwo("icmp eq i32 %n, 0", "icmp ugt i32 %m, 99", "%m",
                        "  call void @f(i32 4, i32 0)\n"
                        "  call void @f(i32 4, i32 0)\n"),
            "(5, 5)");
  EXPECT_EQ(estimateTwo("icmp eq i32 %n, 0", "icmp ugt i32 %m, 99", "%m",
                        "  call void @f(i32 4, i32 0)\n"
                        "  call void @f(i32 2, i32 0)\n"),
            "(3, 5)");
  EXPECT_EQ(estimateTwo("icmp eq i32 %n, 0", "icmp ugt i32 %m, 99", "%m",
                        "  call void @f(i32 4, i32 0)\n"
                        "  call void @f(i32 %x, i32 %x)\n"),
            "cannot");
  EXPECT_EQ(estimateTwo("icmp eq i32 %n, 0", "icmp ugt i32 %m, 99", "%m",
                        "  call void @f(i32 undef, i32 poison)\n"),
            "cannot");
}

TEST(RecursionDepthEstimatorTest, PhiOfBothSides) {
  // Equal on both sides it is known; otherwise it depends on memory.
  auto Estimate = [](StringRef Left, StringRef Right) {
    return estimate("@p = global i1 false\n"
                    "define void @f(i32 %n) {\n"
                    "  %stop = icmp eq i32 %n, 0\n"
                    "  br i1 %stop, label %leaf, label %more\n"
                    "more:\n  %c = load i1, ptr @p\n  %l = sub i32 %n, " +
                    Left + "\n  %r = sub i32 %n, " + Right +
                    "\n  br i1 %c, label %then, label %join\n"
                    "then:\n  br label %join\n"
                    "join:\n"
                    "  %next = phi i32 [ %l, %then ], [ %r, %more ]\n"
                    "  call void @f(i32 %next)\n  ret void\n"
                    "leaf:\n  ret void\n}\n"
                    "define void @main() {\n  call void @f(i32 3)\n"
                    "  ret void\n}\n");
  };
  EXPECT_EQ(Estimate("1", "1"), "(4, 4)");
  EXPECT_EQ(Estimate("1", "2"), "null");
}

TEST(RecursionDepthEstimatorTest, PhiOfDecidedSides) {
  // 12, 6, 3, 2, 1, 0: odd numbers lose one, even ones are halved.
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                          "%odd = trunc i32 %n to i1\n"
                          "  br i1 %odd, label %then, label %else\n"
                          "then:\n  %less = sub i32 %n, 1\n"
                          "  br label %join\n"
                          "else:\n  %half = udiv i32 %n, 2\n"
                          "  br label %join\n"
                          "join:\n  %next = phi i32 [ %less, %then ],"
                          " [ %half, %else ]",
                          "12"),
            "(6, 6)");
}

TEST(RecursionDepthEstimatorTest, SeveralSelfCalls) {
  EXPECT_EQ(estimate("define void @f(i32 %n) {\n"
                     "  %stop = icmp slt i32 %n, 2\n"
                     "  br i1 %stop, label %leaf, label %more\n"
                     "more:\n  %a = sub i32 %n, 1\n  call void @f(i32 %a)\n"
                     "  %b = sub i32 %n, 2\n  call void @f(i32 %b)\n"
                     "  ret void\nleaf:\n  ret void\n}\n"
                     "define void @main() {\n  call void @f(i32 6)\n"
                     "  ret void\n}\n"),
            "(6, 6)(4, 4)");
}

/// `f(i32 n)`, whose loop of seven trips over %i does \p Work and then calls
/// itself, in those trips for which \p Made is true.
std::string estimateInLoop(StringRef Work, StringRef Made) {
  return estimate("@g = global i32 0\n"
                  "define void @f(i32 %n) {\n"
                  "  %stop = icmp eq i32 %n, 4\n"
                  "  br i1 %stop, label %leaf, label %loop\n"
                  "loop:\n"
                  "  %i = phi i32 [ 0, %0 ], [ %j, %latch ]\n"
                  "  %v = load i32, ptr @g\n"
                  "  %odd = trunc i32 %v to i1\n  " +
                  Work + "\n  br i1 " + Made +
                  ", label %call, label %latch\n"
                  "call:\n  %next = add i32 %n, 1\n"
                  "  call void @f(i32 %next)\n  br label %latch\n"
                  "latch:\n  %j = add nuw nsw i32 %i, 1\n"
                  "  %last = icmp eq i32 %j, 7\n"
                  "  br i1 %last, label %leaf, label %loop\n"
                  "leaf:\n  ret void\n}\n"
                  "define void @main() {\n  call void @f(i32 0)\n"
                  "  ret void\n}\n");
}

TEST(RecursionDepthEstimatorTest, InsideALoop) {
  EXPECT_EQ(estimateInLoop("", "true"), "(5, 5)");
  EXPECT_EQ(estimateInLoop("", "%odd"), "(5, 5)");
}

constexpr const char *BetterUnrolled =
    "cannot: its loop around the recursive call is worth more unrolled";

TEST(RecursionDepthEstimatorTest, DeclinesWhereUnrollingIsWorthMore) {
  EXPECT_EQ(
      estimateInLoop("%d = add i32 %i, 3\n  %q = urem i32 %v, %d", "%odd"),
      BetterUnrolled);
  EXPECT_EQ(estimateInLoop("%t = urem i32 %i, 3\n  %u = icmp eq i32 %t, 1\n"
                           "  %q = select i1 %u, i32 %v, i32 5",
                           "%odd"),
            BetterUnrolled);
}

TEST(RecursionDepthEstimatorTest, DoesNotDeclineOtherWork) {
  // A divisor that is no matter of the trip, a number of the trip that decides
  // nothing, and a call that every trip makes.
  EXPECT_EQ(estimateInLoop("%d = or i32 %v, 3\n  %q = urem i32 %i, %d", "%odd"),
            "(5, 5)");
  EXPECT_EQ(estimateInLoop("%q = mul i32 %v, %i", "%odd"), "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, NothingToJudge) {
  EXPECT_EQ(estimate("define void @f(i32 %n) {\n  ret void\n}\n"
                     "define void @main() {\n  call void @f(i32 1)\n"
                     "  ret void\n}\n"),
            "cannot");
  EXPECT_EQ(estimate("define void @f(i32 %n) {\n  call void @f(i32 0)\n"
                     "  ret void\n}\n"),
            "cannot");
}

TEST(RecursionDepthEstimatorTest, NeedsADominatorTree) {
  TestModule TM("define void @f(i32 %n) {\n  call void @f(i32 0)\n"
                "  ret void\n}\n");
  Function &F = TM.function("f");
  RecursionDepthEstimator Estimator(&F, &TM.scalarEvolution(F), nullptr);
  EXPECT_FALSE(Estimator.canEstimateRecursionDepth());
}

} // namespace
