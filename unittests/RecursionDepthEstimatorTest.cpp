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

/// What the estimator says of all calls of @f in @f together; 0 if nothing.
unsigned estimateDeepest(const Twine &Assembly) {
  TestModule TM(Assembly.str());
  Function &F = TM.function("f");
  RecursionDepthEstimator Estimator(&F, &TM.scalarEvolution(F),
                                    &TM.dominatorTree(F));
  EXPECT_TRUE(Estimator.canEstimateRecursionDepth());
  return Estimator.findDeepestRecursion().value_or(0);
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

/// `f(i32 n)`, whose loop of \p Trips trips over %i does \p Work and then calls
/// itself, in those trips for which \p Made is true.
std::string estimateInLoop(const Twine &Work, StringRef Made,
                           unsigned Trips = 7) {
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
                  "  %last = icmp eq i32 %j, " +
                  Twine(Trips) +
                  "\n"
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

TEST(RecursionDepthEstimatorTest, DeclinesForBranchesOnTheTrip) {
  EXPECT_EQ(estimateInLoop("%t = icmp eq i32 %i, 3\n"
                           "  br i1 %t, label %then, label %join\n"
                           "then:\n  br label %join\njoin:",
                           "%odd"),
            BetterUnrolled);
  EXPECT_EQ(estimateInLoop("switch i32 %i, label %join [ i32 3, label %then ]\n"
                           "then:\n  br label %join\njoin:",
                           "%odd"),
            BetterUnrolled);
  // One that leaves the loop is no gain, nor is one that does not know the
  // trip.
  EXPECT_EQ(estimateInLoop("%t = icmp eq i32 %i, 5\n"
                           "  br i1 %t, label %leaf, label %join\njoin:",
                           "%odd"),
            "(5, 5)");
  EXPECT_EQ(estimateInLoop("switch i32 %v, label %join [ i32 3, label %then ]\n"
                           "then:\n  br label %join\njoin:",
                           "%odd"),
            "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, DeclinesForLoopsThatAreUnrolled) {
  const std::string Work = "%d = add i32 %i, 3\n  %q = udiv i32 %v, %d";
  EXPECT_EQ(estimateInLoop(Work, "%odd", 1), "(5, 5)");
  EXPECT_EQ(estimateInLoop(Work, "%odd", 2), BetterUnrolled);
  EXPECT_EQ(
      estimateInLoop(Work, "%odd", RecursionDepthEstimator::MaxUnrolledTrips),
      BetterUnrolled);
  EXPECT_EQ(estimateInLoop(Work, "%odd",
                           RecursionDepthEstimator::MaxUnrolledTrips + 1),
            "(5, 5)");
  // The loop has 12 instructions and the ones added here.
  auto Padded = [&](unsigned Count) {
    std::string Text = Work;
    for (unsigned I = 0; I != Count; ++I)
      Text += "\n  store volatile i32 0, ptr @g";
    return Text;
  };
  const unsigned Largest = RecursionDepthEstimator::MaxUnrolledSize / 10;
  EXPECT_EQ(estimateInLoop(Padded(Largest - 12), "%odd", 10), BetterUnrolled);
  EXPECT_EQ(estimateInLoop(Padded(Largest - 11), "%odd", 10), "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, TheTripIsFollowedForFourSteps) {
  const std::string Three = "%a = add i32 %i, 3\n  %b = mul i32 %a, %i\n"
                            "  %c = xor i32 %b, 5";
  EXPECT_EQ(estimateInLoop(Three + "\n  %d = or i32 %c, 1\n"
                                   "  %q = sdiv i32 %v, %d",
                           "%odd"),
            BetterUnrolled);
  EXPECT_EQ(estimateInLoop(Three + "\n  %d = or i32 %c, 1\n"
                                   "  %e = add i32 %d, 9\n"
                                   "  %q = sdiv i32 %v, %e",
                           "%odd"),
            "(5, 5)");
}

TEST(RecursionDepthEstimatorTest, DoesNotDeclineOtherWork) {
  // A divisor that is no matter of the trip, a number of the trip that decides
  // nothing, and a call that every trip makes.
  EXPECT_EQ(estimateInLoop("%d = or i32 %v, 3\n  %q = urem i32 %i, %d", "%odd"),
            "(5, 5)");
  EXPECT_EQ(estimateInLoop("%q = mul i32 %v, %i", "%odd"), "(5, 5)");
}

/// `f(i32 n)`, which calls itself with n - 1 in every trip of a loop that
/// counts %i up from 5 for as long as \p Trip, after \p Before, is true.
std::string estimateCountedLoop(StringRef Before, StringRef Trip) {
  return estimate("@g = global i32 0\n"
                  "define void @f(i32 %n) {\n"
                  "entry:\n  " +
                  Before +
                  "\n  br label %loop\n"
                  "loop:\n"
                  "  %i = phi i32 [ 5, %entry ], [ %j, %call ]\n"
                  "  %trip = " +
                  Trip +
                  "\n  br i1 %trip, label %call, label %leaf\n"
                  "call:\n  %next = add i32 %n, -1\n"
                  "  call void @f(i32 %next)\n"
                  "  %j = add nuw nsw i32 %i, 1\n  br label %loop\n"
                  "leaf:\n  ret void\n}\n"
                  "define void @main() {\n  call void @f(i32 7)\n"
                  "  ret void\n}\n");
}

TEST(RecursionDepthEstimatorTest, ALoopWithoutTripsTurnsAway) {
  EXPECT_EQ(estimateCountedLoop("", "icmp sle i32 %i, %n"), "(4, 4)");
  EXPECT_EQ(estimateCountedLoop("", "icmp uge i32 %n, %i"), "(4, 4)");
  // Not decided by n.
  EXPECT_EQ(estimateCountedLoop("%m = load i32, ptr @g", "icmp slt i32 %i, %m"),
            "null");
}

TEST(RecursionDepthEstimatorTest, AWayBackToTheGuardIsNoWayOn) {
  EXPECT_EQ(estimate("@p = global i1 false\n"
                     "define void @f(i32 %n) {\n  br label %guard\n"
                     "guard:\n  %more = icmp ne i32 %n, 0\n"
                     "  br i1 %more, label %below, label %again\n"
                     "again:\n  %c = load volatile i1, ptr @p\n"
                     "  br i1 %c, label %guard, label %leaf\n"
                     "below:\n  %next = sub i32 %n, 1\n"
                     "  call void @f(i32 %next)\n  ret void\n"
                     "leaf:\n  ret void\n}\n"
                     "define void @main() {\n  call void @f(i32 3)\n"
                     "  ret void\n}\n"),
            "(4, 4)");
}

TEST(RecursionDepthEstimatorTest, LargeExpressionsAreNotRewritten) {
  // 3 + n * (l0 + l1 + ...) is 3 when n is 0; its size is the number of loads
  // and five more.
  auto Sum = [](unsigned Loads) {
    std::string Text = "%s0 = load i32, ptr @g\n";
    for (unsigned I = 1; I != Loads; ++I) {
      const std::string N = std::to_string(I);
      Text += "  %l" + N + " = load volatile i32, ptr @g\n  %s" + N +
              " = add i32 %s" + std::to_string(I - 1) + ", %l" + N + "\n";
    }
    return Text + "  %p = mul i32 %n, %s" + std::to_string(Loads - 1) +
           "\n  %m = add i32 %p, 3";
  };
  const unsigned Largest = RecursionDepthEstimator::MaxFoldDepth - 5;
  for (const char *Trip : {"icmp sle i32 %i, %m", "icmp sge i32 %m, %i"}) {
    EXPECT_EQ(estimateCountedLoop(Sum(Largest), Trip), "(8, 8)") << Trip;
    EXPECT_EQ(estimateCountedLoop(Sum(Largest + 1), Trip), "null") << Trip;
  }
}

TEST(RecursionDepthEstimatorTest, UpToEightEntries) {
  std::string Entries;
  for (unsigned I = 1; I != 9; ++I)
    Entries += "  call void @f(i32 " + std::to_string(I) + ", i32 0)\n";
  auto Estimate = [](StringRef Entries) {
    return estimateTwo("icmp eq i32 %n, 0", "icmp ugt i32 %m, 99", "%m",
                       Entries);
  };
  EXPECT_EQ(Estimate(Entries), "(2, 9)");
  EXPECT_EQ(Estimate(Entries + "  call void @f(i32 8, i32 0)\n"), "(2, 9)");
  EXPECT_EQ(Estimate(Entries + "  call void @f(i32 9, i32 0)\n"), "cannot");
}

TEST(RecursionDepthEstimatorTest, UpToEightSelfCalls) {
  auto Estimate = [](unsigned Calls) {
    std::string Step = "%next = sub i32 %n, 1";
    for (unsigned I = 1; I != Calls; ++I)
      Step += "\n  call void @f(i32 %next)";
    return estimateSteps("i32", "%stop = icmp eq i32 %n, 0", Step, "1");
  };
  EXPECT_EQ(Estimate(8), "(2, 2)(2, 2)(2, 2)(2, 2)(2, 2)(2, 2)(2, 2)(2, 2)");
  EXPECT_EQ(Estimate(9), "cannot");
}

TEST(RecursionDepthEstimatorTest, CallsOfOthersDoNotCount) {
  EXPECT_EQ(estimate("declare void @other(i32)\n"
                     "define void @f(i32 %n) {\n"
                     "  call void @other(i32 %n)\n"
                     "  %stop = icmp eq i32 %n, 0\n"
                     "  br i1 %stop, label %leaf, label %more\n"
                     "more:\n  %next = sub i32 %n, 1\n"
                     "  call void @f(i32 %next)\n"
                     "  call void @other(i32 %next)\n  ret void\n"
                     "leaf:\n  ret void\n}\n"
                     "define void @main(i32 %x) {\n  call void @f(i32 2)\n"
                     "  call void @other(i32 %x)\n  ret void\n}\n"),
            "(3, 3)");
}

TEST(RecursionDepthEstimatorTest, UnreachableSelfCallsDoNotCount) {
  EXPECT_EQ(estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                          "%next = sub i32 %n, 1\n  br label %rest\n"
                          "never:\n  call void @f(i32 %n)\n  br label %rest\n"
                          "rest:",
                          "1"),
            "(2, 2)");
}

/// \p Length instructions that compute \p Result from %s0, which \p First does.
std::string chain(const std::string &First, unsigned Length,
                  const std::string &Result) {
  std::string Text = "%s0 = " + First + "\n";
  for (unsigned I = 1; I != Length; ++I)
    Text += "  " + (I + 1 == Length ? Result : "%s" + std::to_string(I)) +
            " = xor i32 %s" + std::to_string(I - 1) + ", 0\n";
  return Text;
}

TEST(RecursionDepthEstimatorTest, LongChainsAreNotFollowed) {
  const unsigned Longest = RecursionDepthEstimator::MaxFoldDepth;
  auto Step = [](unsigned Length) {
    return estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                         chain("sub i32 %n, 1", Length, "%next"), "2");
  };
  EXPECT_EQ(Step(Longest), "(3, 3)");
  EXPECT_EQ(Step(Longest + 1), "null");
  // The comparison is one more.
  auto Guard = [](unsigned Length) {
    return estimateSteps("i32",
                         chain("add i32 %n, 0", Length, "%end") +
                             "  %stop = icmp eq i32 %end, 0",
                         "%next = sub i32 %n, 1", "2");
  };
  EXPECT_EQ(Guard(Longest - 1), "(3, 3)");
  EXPECT_EQ(Guard(Longest), "null");
}

TEST(RecursionDepthEstimatorTest, DeadEdgesAreKnownFromNearBy) {
  // Even numbers do not come by the side of \p Blocks blocks.
  auto Estimate = [](unsigned Blocks) {
    std::string Side = "s1:\n  %less = sub i32 %n, 1\n  br label %";
    for (unsigned I = 2; I <= Blocks; ++I)
      Side += "s" + std::to_string(I) + "\ns" + std::to_string(I) +
              ":\n  br label %";
    return estimateSteps("i32", "%stop = icmp eq i32 %n, 0",
                         "%odd = trunc i32 %n to i1\n"
                         "  br i1 %odd, label %s1, label %else\n" +
                             Side +
                             "join\nelse:\n  %half = udiv i32 %n, 2\n"
                             "  br label %join\n"
                             "join:\n  %next = phi i32 [ %less, %s" +
                             std::to_string(Blocks) + " ], [ %half, %else ]",
                         "12");
  };
  EXPECT_EQ(Estimate(3), "(6, 6)");
  EXPECT_EQ(Estimate(4), "null");
}

TEST(RecursionDepthEstimatorTest, OneCallGoesOnWhereAnotherEnds) {
  const Twine OddAndEven = R"(
define void @f(i32 %n) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %leaf, label %more
more:
  %odd = trunc i32 %n to i1
  br i1 %odd, label %one, label %two
one:
  %a = sub i32 %n, 1
  call void @f(i32 %a)
  br label %leaf
two:
  %b = sub i32 %n, 2
  call void @f(i32 %b)
  br label %leaf
leaf:
  ret void
}
define void @main() {
  call void @f(i32 7)
  ret void
}
)";
  EXPECT_EQ(estimate(OddAndEven), "(2, 2)(1, 1)");
  // 7, 6, 4, 2, 0.
  EXPECT_EQ(estimateDeepest(OddAndEven), 5u);
}

/// f(a, b) that recurses with each of \p Steps, lists of two arguments out of
/// %a, %b and what \p Values computes, until a is \p Last; entered with
/// \p Starts in turn.
std::string recursing(const std::string &Values,
                      std::initializer_list<const char *> Steps, unsigned Last,
                      std::initializer_list<const char *> Starts) {
  std::string Assembly = "define void @f(i32 %a, i32 %b) {\n"
                         "  %stop = icmp eq i32 %a, " +
                         std::to_string(Last) +
                         "\n  br i1 %stop, label %leaf, label %more\n"
                         "more:\n" +
                         Values;
  for (const char *Step : Steps)
    Assembly += std::string("  call void @f(") + Step + ")\n";
  Assembly += "  ret void\nleaf:\n  ret void\n}\ndefine void @main() {\n";
  for (const char *Start : Starts)
    Assembly += std::string("  call void @f(") + Start + ")\n";
  return Assembly + "  ret void\n}\n";
}

TEST(RecursionDepthEstimatorTest, TheDeepestOfAllCallsAndEntries) {
  const std::string Values = "  %one = sub i32 %a, 1\n"
                             "  %two = lshr i32 %a, 1\n";
  EXPECT_EQ(
      estimateDeepest(recursing(Values, {"i32 %two, i32 1", "i32 %one, i32 2"},
                                0, {"i32 6, i32 0"})),
      7u);
  EXPECT_EQ(estimateDeepest(recursing(Values, {"i32 %two, i32 1"}, 0,
                                      {"i32 6, i32 0", "i32 9, i32 0"})),
            5u);
  EXPECT_EQ(estimateDeepest(
                recursing(Values, {"i32 %two, i32 1"}, 6, {"i32 6, i32 0"})),
            1u);
}

TEST(RecursionDepthEstimatorTest, AsManyTuplesAtOneDepthAsAreAllowed) {
  const std::string Values = "  %next = add i32 %a, 1\n"
                             "  %left = shl i32 %b, 1\n"
                             "  %right = or i32 %left, 1\n";
  auto Estimate = [&Values](unsigned Levels) {
    return estimateDeepest(
        recursing(Values, {"i32 %next, i32 %left", "i32 %next, i32 %right"},
                  Levels, {"i32 0, i32 0"}));
  };
  EXPECT_EQ(RecursionDepthEstimator::MaxTuples, 32u);
  EXPECT_EQ(Estimate(5), 6u);
  EXPECT_EQ(Estimate(6), 0u);
}

TEST(RecursionDepthEstimatorTest, GoingRoundInCirclesIsNoDepth) {
  const std::string Values = "  %other = sub i32 1, %b\n"
                             "  %next = add i32 %a, 1\n";
  EXPECT_EQ(estimateDeepest(
                recursing(Values, {"i32 %a, i32 %other"}, 3, {"i32 0, i32 0"})),
            0u);
  // One call that stays where it is is enough.
  EXPECT_EQ(
      estimateDeepest(recursing(Values, {"i32 %next, i32 %b", "i32 %a, i32 %b"},
                                3, {"i32 0, i32 0"})),
      0u);
  EXPECT_EQ(estimateDeepest(
                recursing(Values, {"i32 %next, i32 %b"}, 3, {"i32 0, i32 0"})),
            4u);
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
