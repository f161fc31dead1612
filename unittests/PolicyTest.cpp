//===- PolicyTest.cpp - What pays without being asked -----------------===//

#include "plugin/policy/Policy.h"
#include "TestModule.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Preparation.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

const Bounds Wide = {7, 550};

/// What the policy says about @f of a module.
class Asked {
public:
  explicit Asked(const std::string &Assembly, Bounds Limits = Wide,
                 StringRef Name = "f")
      : TM(Assembly),
        Known(TM.function(Name), TM.functionAnalyses(), Limits.InlinerFollows),
        What(makePlan(Known, Limits)),
        PassesSum(findSumToPass(Known, Limits, What)),
        LoopsFirst(wantsLoopsFirst(Known, Limits, What)) {}

private:
  TestModule TM;
  const Facts Known;

public:
  const Plan What;
  const bool PassesSum;
  const bool LoopsFirst;
  std::string name() const { return What.Decision.Name.str(); }
};

/// Does a ring of few copies leave equal calls to be merged?
bool merges(const std::string &Assembly) {
  const Asked A(Assembly);
  const bool Merges =
      A.What.Kind == Plan::Ring && A.What.Copies <= 4 && !A.What.Staggered;
  // The policy leaves what merges as it is.
  EXPECT_FALSE(Merges && A.LoopsFirst);
  return Merges;
}

const char *const Prelude = R"(
@g = external global i32
declare void @other()
declare i32 @pure(i32) memory(none) nounwind willreturn
declare void @use(ptr)
declare i32 @setjmp(ptr) returns_twice
declare i1 @more()
)";

/// f(n, k), which returns n below 2, and else runs \p Body.
std::string binary(const std::string &Body) {
  return Prelude + std::string(R"(
define i32 @f(i32 %n, i32 %k) {
entry:
  %small = icmp ult i32 %n, 2
  br i1 %small, label %base, label %rec
base:
  ret i32 %n
rec:
)") + Body +
         "\n}\n";
}

/// A call of f whose arguments are stepped by constants.
std::string step(const std::string &Result, int N, int K) {
  return "  %n." + Result + " = add i32 %n, " + std::to_string(N) + "\n  %k." +
         Result + " = add i32 %k, " + std::to_string(K) + "\n  %" + Result +
         " = call i32 @f(i32 %n." + Result + ", i32 %k." + Result + ")\n";
}

const std::string Sum = "  %s = add i32 %a, %b\n  ret i32 %s";
const std::string Difference = "  %s = sub i32 %a, %b\n  ret i32 %s";

/// 8 instructions, 2 self calls, and a test of 3 instructions with its return.
/// \p Locals stands in the entry block.
std::string hanoi(const std::string &Locals = "") {
  return Prelude + std::string(R"(
define void @f(i32 %n, i32 %a, i32 %b, i32 %c) {
entry:
)") + Locals +
         R"(
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
  call void @f(i32 %m, i32 %a, i32 %c, i32 %b)
  store i32 %a, ptr @g
  call void @f(i32 %m, i32 %c, i32 %b, i32 %a)
  br label %exit
exit:
  ret void
}
)";
}

/// A function without result whose block `rec` ends behind \p Body.
std::string voidWith(const std::string &Body, const std::string &Rest = "",
                     const std::string &Parameters = "i32 %n, ptr %p",
                     const std::string &Attributes = "") {
  return Prelude + std::string("define void @f(") + Parameters + ") " +
         Attributes + R"( {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
)" + Body +
         R"(
  br label %exit
exit:
  ret void
)" + Rest +
         "}\n";
}

const std::string Call = "  call void @f(i32 %n, ptr %p)\n";
const std::string CallAndStore = Call + "  store i32 %n, ptr %p\n";

//===----------------------------------------------------------------------===//
// Equal calls
//===----------------------------------------------------------------------===//

TEST(EqualCallsTest, StepsByConstantsMerge) {
  EXPECT_TRUE(merges(binary(step("a", -1, 0) + step("b", -2, 0) + Sum)));
  EXPECT_TRUE(merges(binary(step("a", -1, -1) + step("b", -1, -2) + Sum)));
  EXPECT_TRUE(
      merges(binary(step("a", -1, 0) + step("b", -1, -1) + Difference)));
  EXPECT_TRUE(merges(binary(step("a", -1, 0) + "  %l = load i32, ptr @g\n" +
                            step("b", -2, 0) + Difference)));
  EXPECT_TRUE(
      merges(binary(step("a", -1, 0) + "  %l = call i32 @pure(i32 %n)\n" +
                    step("b", -2, 0) + Difference)));
}

/// f(n-2) is called by f(n) and by f(n-1): it is not to stand behind a test.
TEST(EqualCallsTest, ACallThatIsMadeAnyhowHasNoTestInFront) {
  for (const std::string &Body :
       {step("a", -1, 0) + step("b", -2, 0) + Difference,
        step("a", -2, -4) + step("b", -1, -2) + Difference,
        step("a", -1, 0) + step("b", -1, -1) + step("c", -2, -1) +
            Difference}) {
    const Asked A(binary(Body));
    EXPECT_GE(A.What.Copies, 3u) << Body;
    EXPECT_FALSE(A.What.Guard) << Body;
    EXPECT_TRUE(A.What.MergesCalls) << Body;
  }
}

/// f(n-2, k-1) is called by f(n-1, k) and by f(n-1, k-1).
TEST(EqualCallsTest, CallsOfOneLevelStandBehindTestsAnyhow) {
  for (const std::string &Body :
       {step("a", -1, 0) + step("b", -1, -1) + Difference,
        step("a", -3, 0) + step("b", -1, 0) + Difference,
        step("a", -1, -1) + step("b", -1, -2) + Difference}) {
    const Asked A(binary(Body));
    EXPECT_EQ(A.What.Kind, Plan::Ring) << Body;
    EXPECT_EQ(A.What.Copies, 4u) << Body;
    EXPECT_TRUE(A.What.Guard) << Body;
    EXPECT_TRUE(A.What.MergesCalls) << Body;
    EXPECT_FALSE(A.What.Staggered) << Body;
  }
}

TEST(EqualCallsTest, GrowthIsThatOfAllBodies) {
  const Asked A(R"(
define i32 @f(i32 %n) {
entry:
  %small = icmp ult i32 %n, 2
  br i1 %small, label %base, label %rec
base:
  ret i32 %n
rec:
  %m = sub i32 %n, 1
  %a = call i32 @f(i32 %m)
  %l = sub i32 %n, 2
  %b = call i32 @f(i32 %l)
  %s = add i32 %a, %b
  ret i32 %s
}
)");
  EXPECT_FALSE(A.LoopsFirst);
  ASSERT_EQ(A.What.Copies, 4u);
  EXPECT_FALSE(A.What.Guard);
  // Fifteen bodies of 9, and sixteen calls.
  EXPECT_EQ(A.What.Growth, 151u);
  EXPECT_EQ(A.name(), "AutoRing");
}

TEST(EqualCallsTest, NotIfAnythingIsWritten) {
  for (const char *Effect :
       {"  store i32 0, ptr @g\n", "  %l = load volatile i32, ptr @g\n",
        "  call void @other()\n", "  fence seq_cst\n",
        "  %l = load atomic i32, ptr @g acquire, align 4\n"})
    EXPECT_FALSE(
        merges(binary(step("a", -1, 0) + Effect + step("b", -2, 0) + Sum)))
        << Effect;
}

TEST(EqualCallsTest, NotIfStepsAreNoConstants) {
  EXPECT_FALSE(merges(binary(
      step("a", -1, 0) +
      "  %h = lshr i32 %n, 1\n  %b = call i32 @f(i32 %h, i32 %k)\n" + Sum)));
  EXPECT_FALSE(merges(binary(
      step("a", -1, 0) +
      "  %h = sub i32 %n, 1\n  %b = call i32 @f(i32 %h, i32 %a)\n" + Sum)));
  EXPECT_FALSE(merges(binary(
      step("a", -1, 0) +
      "  %h = sub i32 %n, %k\n  %b = call i32 @f(i32 %h, i32 %k)\n" + Sum)));
}

TEST(EqualCallsTest, NotIfAnArgumentIsNoInteger) {
  EXPECT_FALSE(merges(R"(
define i32 @f(i32 %n, double %x) {
entry:
  %small = icmp ult i32 %n, 2
  br i1 %small, label %base, label %rec
base:
  ret i32 %n
rec:
  %m = sub i32 %n, 1
  %a = call i32 @f(i32 %m, double %x)
  %l = sub i32 %n, 2
  %b = call i32 @f(i32 %l, double %x)
  %s = add i32 %a, %b
  ret i32 %s
}
)"));
}

TEST(EqualCallsTest, NotIfCallsExcludeEachOther) {
  EXPECT_FALSE(merges(
      binary("  %odd = trunc i32 %n to i1\n"
             "  br i1 %odd, label %x, label %y\nx:\n" +
             step("a", -1, 0) + "  %a1 = sub i32 5, %a\n  ret i32 %a1\ny:\n" +
             step("b", -2, 0) + "  %b1 = sub i32 7, %b\n  ret i32 %b1")));
}

TEST(EqualCallsTest, NotIfALoopIsLostThatNeedsNoStack) {
  // Only the second call, a sum's, goes down to the end: it keeps k.
  EXPECT_FALSE(merges(binary(step("a", -1, -1) + step("b", -1, 0) + Sum)));
  EXPECT_TRUE(
      Asked(binary(step("a", -1, -1) + step("b", -1, 0) + Sum)).LoopsFirst);
  // The first one takes larger steps.
  EXPECT_FALSE(merges(binary(step("a", -3, 0) + step("b", -1, 0) + Sum)));
  // It steps the other way.
  EXPECT_FALSE(merges(binary(step("a", 1, 0) + step("b", -1, 0) + Sum)));
  // The same steps where nothing accumulates.
  EXPECT_TRUE(merges(binary(step("a", -3, 0) + step("b", -1, 0) + Difference)));
}

TEST(EqualCallsTest, NotIfTheOtherCallIsNotMadeWheneverTheLoopWouldBe) {
  EXPECT_FALSE(
      merges(binary("  %low = icmp ult i32 %n, 5\n"
                    "  br i1 %low, label %x, label %y\nx:\n" +
                    step("a", -1, 0) + step("c", -2, 0) +
                    "  %w = sub i32 %a, %c\n  br label %y\ny:\n"
                    "  %z = phi i32 [ 0, %rec ], [ %w, %x ]\n" +
                    step("b", -1, 0) + "  %s = add i32 %z, %b\n  ret i32 %s")));
}

//===----------------------------------------------------------------------===//
// Loops first
//===----------------------------------------------------------------------===//

TEST(LoopsFirstTest, OnlyTailCallsAreLeftAlone) {
  const Asked A(binary("  %m = sub i32 %n, 1\n"
                       "  %r = call i32 @f(i32 %m, i32 %n)\n  ret i32 %r"));
  EXPECT_FALSE(A.LoopsFirst);
  EXPECT_EQ(A.name(), "AutoLoop");
}

TEST(LoopsFirstTest, ATailCallOfAnotherCallsResult) {
  EXPECT_TRUE(Asked(binary("  %m = sub i32 %n, 1\n"
                           "  %r = call i32 @f(i32 %n, i32 %m)\n"
                           "  %r1 = add i32 %r, 3\n"
                           "  %s = call i32 @f(i32 %m, i32 %r1)\n"
                           "  ret i32 %s"))
                  .LoopsFirst);
}

TEST(LoopsFirstTest, NotWhereLeavesAreCounted) {
  EXPECT_FALSE(Asked(hanoi(), {7, 550, /*InlinerFollows=*/true}).LoopsFirst);
  EXPECT_TRUE(Asked(hanoi()).LoopsFirst);
}

/// A walk that goes on with a tail call; \p Between its calls.
std::string tailWalk(const std::string &Between, const std::string &Arguments,
                     const std::string &FirstCall = Call) {
  return voidWith(FirstCall + "  store i32 %n, ptr %p\n" + Between +
                  "  call void @f(" + Arguments + ")\n");
}

const std::string Unless = "  %last = call i1 @more()\n"
                           "  br i1 %last, label %exit, label %on\non:\n";

TEST(LoopsFirstTest, ATailCallThatIsAlwaysMade) {
  const Asked A(tailWalk("", "i32 %n, ptr null"));
  EXPECT_TRUE(A.LoopsFirst);
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_FALSE(Asked(tailWalk(Unless, "i32 %n, ptr null")).LoopsFirst);
  // With a third call the copies are a tree in any case.
  EXPECT_FALSE(
      Asked(tailWalk("", "i32 %n, ptr null", CallAndStore + Call)).LoopsFirst);
}

TEST(LoopsFirstTest, NotForWhatIsNoRing) {
  const std::string F = tailWalk("", "i32 %n, ptr null");
  EXPECT_FALSE(Asked(F, {1, 550}).LoopsFirst);
  EXPECT_FALSE(Asked(F, {7, 1}).LoopsFirst);
}

TEST(LoopsFirstTest, ATailCallThatStepsThreeArguments) {
  auto LoopsFirst = [](const std::string &Arguments) {
    return Asked(voidWith("  call void @f(i32 %n, ptr %p, i32 %i, i32 %j)\n"
                          "  store i32 %n, ptr %p\n" +
                              Unless + "  call void @f(" + Arguments + ")\n",
                          "", "i32 %n, ptr %p, i32 %i, i32 %j"))
        .LoopsFirst;
  };
  EXPECT_TRUE(LoopsFirst("i32 %n, ptr null, i32 %j, i32 %i"));
  EXPECT_FALSE(LoopsFirst("i32 %n, ptr null, i32 %i, i32 1"));
}

TEST(LoopsFirstTest, ATailCallWithATestOfItsOwn) {
  // Whether there is a left one, and a right one.
  const std::string Tested = R"(
define void @f(ptr %t) {
entry:
  %l = load ptr, ptr %t
  %none = icmp eq ptr %l, null
  br i1 %none, label %visit, label %left
left:
  call void @f(ptr %l)
  br label %visit
visit:
  %v = load i32, ptr @g
  %v1 = add i32 %v, 3
  store i32 %v1, ptr @g
  %q = getelementptr ptr, ptr %t, i64 1
  %r = load ptr, ptr %q
  %end = icmp eq ptr %r, null
  br i1 %end, label %exit, label %right
right:
  call void @f(ptr %r)
  br label %exit
exit:
  ret void
}
)";
  const Asked A(Prelude + Tested);
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_FALSE(A.What.Guard);
  EXPECT_TRUE(A.LoopsFirst);
}

TEST(LoopsFirstTest, NotWithoutTailCalls) {
  EXPECT_FALSE(Asked(voidWith(CallAndStore + CallAndStore)).LoopsFirst);
}

TEST(LoopsFirstTest, AnAccumulator) {
  EXPECT_TRUE(Asked(R"(
define i32 @f(ptr %t) {
entry:
  %none = icmp eq ptr %t, null
  br i1 %none, label %exit, label %rec
rec:
  %l = load ptr, ptr %t
  %a = call i32 @f(ptr %l)
  %q = getelementptr ptr, ptr %t, i64 1
  %r = load ptr, ptr %q
  %c = add i32 %a, 1
  %b = call i32 @f(ptr %r)
  %s = add i32 %c, %b
  br label %exit
exit:
  %v = phi i32 [ 0, %entry ], [ %s, %rec ]
  ret i32 %v
}
)")
                  .LoopsFirst);
}

TEST(LoopsFirstTest, AVariableInMemory) {
  EXPECT_TRUE(Asked(hanoi("  %x = alloca i32")).LoopsFirst);
  // What is refused anyway is left to the compiler.
  const std::string Few = CallAndStore + CallAndStore + CallAndStore;
  auto LoopsFirst = [](const std::string &Calls) {
    std::string F = voidWith("  call void @use(ptr %x)\n" + Calls + Call);
    const std::string Entry = "entry:\n";
    F.insert(F.find(Entry) + Entry.size(), "  %x = alloca i32\n");
    return Asked(F).LoopsFirst;
  };
  EXPECT_FALSE(LoopsFirst(""));
  EXPECT_TRUE(LoopsFirst(Few + CallAndStore));
  EXPECT_FALSE(LoopsFirst(Few + CallAndStore + CallAndStore));
}

//===----------------------------------------------------------------------===//
// Rings
//===----------------------------------------------------------------------===//

/// hanoi(), entered from \p Outside.
std::string entered(const std::string &Outside) {
  return hanoi() + "define void @outside(i32 %n) {\n" + Outside +
         "  ret void\n}\n";
}

const Bounds Chains = {7, 550, /*InlinerFollows=*/true};
const std::string EnteredWith3 =
    "  call void @f(i32 3, i32 %n, i32 1, i32 2)\n";

TEST(AutoChainTest, AsDeepAsKnown) {
  const Asked A(entered(EnteredWith3), Chains);
  EXPECT_EQ(A.name(), "AutoChain");
  EXPECT_EQ(A.What.Kind, Plan::Chain);
  // For the disks 3, 2, 1, 0.
  EXPECT_EQ(A.What.Copies, 4u);
  // Bodies of 8, once, twice and four times, and 8 calls that do nothing.
  EXPECT_EQ(A.What.Growth, 7 * 8u + 8);
  EXPECT_FALSE(A.What.Guard);
}

TEST(AutoChainTest, OfOneCopy) {
  const Asked A(entered("  call void @f(i32 0, i32 %n, i32 1, i32 2)\n"),
                Chains);
  EXPECT_EQ(A.What.Kind, Plan::Chain);
  EXPECT_EQ(A.What.Copies, 1u);
  EXPECT_NE(A.What.Decision.str().find("chain of 1 copy by"),
            std::string::npos);
}

TEST(AutoChainTest, TheDeepestEntryAndAllOfThemCount) {
  const Asked A(
      entered(EnteredWith3 + "  call void @f(i32 1, i32 %n, i32 %n, i32 %n)\n"),
      Chains);
  EXPECT_EQ(A.What.Kind, Plan::Chain);
  EXPECT_EQ(A.What.Copies, 4u);
  EXPECT_EQ(A.What.Growth, 2 * 64u);
}

TEST(AutoChainTest, OnlyIfAllOfItFits) {
  EXPECT_EQ(Asked(entered(EnteredWith3), {7, 64, true}).What.Kind, Plan::Chain);
  EXPECT_EQ(Asked(entered(EnteredWith3), {7, 63, true}).What.Kind,
            Plan::Leaves);
}

TEST(AutoChainTest, OnlyIfAnInlinerFollows) {
  EXPECT_EQ(Asked(entered(EnteredWith3), {7, 550, false}).What.Kind,
            Plan::Ring);
}

TEST(AutoChainTest, NotIfAnyDepthIsUnknownOrTooLarge) {
  const std::string Unknown = "  call void @f(i32 %n, i32 0, i32 1, i32 2)\n";
  EXPECT_EQ(Asked(entered(EnteredWith3 + Unknown), Chains).What.Kind,
            Plan::Leaves);
  EXPECT_EQ(Asked(entered("  call void @f(i32 7, i32 0, i32 1, i32 2)\n"),
                  {7, 5000, true})
                .What.Kind,
            Plan::Leaves);
  EXPECT_EQ(Asked(entered("  call void @f(i32 6, i32 0, i32 1, i32 2)\n"),
                  {7, 5000, true})
                .What.Kind,
            Plan::Chain);
}

TEST(AutoChainTest, AsDeepAsAllCallsTogetherGo) {
  // One call is for odd numbers, one for even ones: 7, 6, 4, 2, 0.
  const Asked A(std::string(Prelude) + R"(
define void @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %odd = trunc i32 %n to i1
  store i32 %n, ptr @g
  br i1 %odd, label %one, label %two
one:
  %m1 = sub i32 %n, 1
  call void @f(i32 %m1)
  br label %join
two:
  %m2 = sub i32 %n, 2
  call void @f(i32 %m2)
  br label %join
join:
  store i32 %n, ptr @g
  br label %exit
exit:
  ret void
}
define void @outside() {
  call void @f(i32 7)
  ret void
}
)",
                Chains);
  EXPECT_EQ(A.What.Kind, Plan::Chain);
  EXPECT_EQ(A.What.Copies, 5u);
}

//===----------------------------------------------------------------------===//
// Leaf chains
//===----------------------------------------------------------------------===//

TEST(AutoLeavesTest, AsManyLevelsAsFit) {
  // Without the branch and the calls a body is 5, and the last activation is a
  // comparison: 2^k - 1 and 2^k of them with k levels left.
  const unsigned Growth[] = {0, 0, 19, 43, 91 + 19, 187 + 19, 379 + 43};
  for (unsigned Levels = 2; Levels <= 6; ++Levels) {
    const Asked A(hanoi(), {9, Growth[Levels], /*InlinerFollows=*/true});
    EXPECT_EQ(A.name(), "AutoLeaves");
    ASSERT_EQ(A.What.Kind, Plan::Leaves);
    EXPECT_EQ(A.What.Copies, Levels + 1);
    EXPECT_EQ(A.What.Growth, Growth[Levels]);
    EXPECT_EQ(A.What.Counter->Values.size(), Levels + 1);
    EXPECT_EQ(A.What.EntryLevels.front(), Levels);
    EXPECT_EQ(A.What.EntryLevels.size(), Levels < 4 ? 1u : 2u);
    EXPECT_EQ(A.What.EntryLevels.back(), Levels < 4 ? Levels : Levels / 2);
    const Asked Fewer(hanoi(),
                      {9, Growth[Levels] - 1, /*InlinerFollows=*/true});
    EXPECT_EQ(Fewer.What.Kind, Levels == 2 ? Plan::Nothing : Plan::Leaves);
    EXPECT_LT(Fewer.What.Copies, Levels + 1);
  }
}

TEST(AutoLeavesTest, NoMoreCopiesThanAllowed) {
  EXPECT_EQ(Asked(hanoi(), {4, 5000, /*InlinerFollows=*/true}).What.Copies, 4u);
  const Asked TooFew(hanoi(), {2, 5000, /*InlinerFollows=*/true});
  EXPECT_EQ(TooFew.What.Kind, Plan::Ring);
}

TEST(AutoLeavesTest, VariablesInMemoryTakeLevels) {
  // Three levels have 7 bodies, and four with the two below them 15 + 3.
  EXPECT_EQ(
      Asked(hanoi("  %v = alloca [64 x i8]\n"), {9, 5000, true}).What.Copies,
      4u);
}

TEST(AutoLeavesTest, OnlyIfAnInlinerFollows) {
  EXPECT_EQ(Asked(hanoi(), {9, 5000, /*InlinerFollows=*/false}).What.Kind,
            Plan::Ring);
}

TEST(AutoLeavesTest, NotWhereCallsMerge) {
  EXPECT_EQ(Asked(binary(step("a", -1, 0) + step("b", -1, 1) + Difference),
                  {9, 5000, true})
                .What.Kind,
            Plan::Ring);
}

TEST(AutoLeavesTest, NotWhereItIsALoop) {
  // Its second call would be a trip of it, if it were not as deep as the first.
  const std::string Product = "  %m = sub i32 %n, 1\n  store i32 %n, ptr @g\n"
                              "  %a = call i32 @f(i32 %m, i32 %n)\n"
                              "  %b = call i32 @f(i32 %m, i32 %a)\n"
                              "  %s = mul i32 %b, %a\n  ret i32 %s";
  const Asked A(binary(Product), {9, 5000, true});
  EXPECT_FALSE(A.LoopsFirst);
  EXPECT_EQ(A.What.Kind, Plan::Leaves);
  EXPECT_TRUE(Asked(binary(Product)).LoopsFirst);
}

/// f(n), which may return before each of two calls of f(n-1), behind a store.
const std::string MayEndEarly = Prelude + std::string(R"(
define void @f(i32 %n, ptr %p) {
entry:
  store i32 %n, ptr %p
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %first
first:
  %m = sub i32 %n, 1
  %c = call i1 @more()
  br i1 %c, label %second, label %exit
second:
  call void @f(i32 %m, ptr %p)
  store i32 0, ptr @g
  call void @f(i32 %m, ptr %p)
  store i32 0, ptr @g
  br label %exit
exit:
  ret void
}
)");

TEST(AutoLeavesTest, WhereNoRingPaysAlsoIfItMayEndEarly) {
  EXPECT_EQ(Asked(MayEndEarly, {9, 5000, true}).What.Kind, Plan::Leaves);
  EXPECT_NE(Asked(MayEndEarly, {9, 5000, false}).What.Kind, Plan::Leaves);

  // With the store behind the test there is a guard, and a ring.
  std::string Guarded = MayEndEarly;
  const std::string Store = "  store i32 %n, ptr %p\n";
  Guarded.erase(Guarded.find(Store), Store.size());
  EXPECT_EQ(Asked(Guarded, {9, 5000, true}).What.Kind, Plan::Ring);
}

TEST(AutoLeavesTest, NotInALoop) {
  const std::string InLoop = voidWith(R"(
  %m = sub i32 %n, 1
  br label %loop
loop:
  call void @f(i32 %m, ptr %p)
  call void @f(i32 %m, ptr %p)
  %c = call i1 @more()
  br i1 %c, label %loop, label %out
out:)");
  EXPECT_EQ(Asked(InLoop, {9, 5000, true}).What.Kind, Plan::Ring);
}

//===----------------------------------------------------------------------===//
// Passed sums
//===----------------------------------------------------------------------===//

/// The sum of f at \p First and at \p Second, in which %n, %p and %m = %n - 1
/// are known.
std::string sumOf(const std::string &First, const std::string &Second) {
  return Prelude + std::string(R"(
define i32 @f(i32 %n, ptr %p) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
  %q = load ptr, ptr %p
  store i32 %n, ptr @g
  %a = call i32 @f()") +
         First + R"()
  %b = call i32 @f()" +
         Second + R"()
  %s = add i32 %a, %b
  br label %exit
exit:
  %x = phi i32 [ 0, %entry ], [ %s, %rec ]
  ret i32 %x
}
)";
}

TEST(AutoSumTest, PassedInARing) {
  const Bounds Ring = {9, 900, /*InlinerFollows=*/true};
  const std::string Halves = "i32 %h, ptr %q";
  std::string Sum = sumOf(Halves, Halves);
  Sum.insert(Sum.find("  %q ="), "  %h = lshr i32 %n, 1\n");
  const Asked A(Sum, Ring);
  EXPECT_TRUE(A.PassesSum);
  EXPECT_EQ(A.name(), "AutoRing");
  // Not without an inliner, and not if there is no ring.
  EXPECT_FALSE(Asked(Sum, {9, 900, /*InlinerFollows=*/false}).PassesSum);
  EXPECT_FALSE(Asked(Sum, {1, 900, /*InlinerFollows=*/true}).PassesSum);
}

TEST(AutoSumTest, NotWhereConstantsMakeIt) {
  const Bounds Wide = {9, 900, /*InlinerFollows=*/true};
  const Asked A(sumOf("i32 %m, ptr %q", "i32 %m, ptr %q"), Wide);
  EXPECT_EQ(A.name(), "AutoLeaves");
  EXPECT_FALSE(A.PassesSum);
}

TEST(AutoSumTest, NotWhereEqualCallsMerge) {
  const Bounds Wide = {9, 900, /*InlinerFollows=*/true};
  const Asked A(R"(
define i32 @f(i32 %n) {
entry:
  %none = icmp slt i32 %n, 2
  br i1 %none, label %exit, label %rec
rec:
  %m = sub i32 %n, 1
  %l = sub i32 %n, 2
  %a = call i32 @f(i32 %m)
  %b = call i32 @f(i32 %l)
  %s = add i32 %a, %b
  br label %exit
exit:
  %x = phi i32 [ %n, %entry ], [ %s, %rec ]
  ret i32 %x
}
)",
                Wide);
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_FALSE(A.PassesSum);
}

//===----------------------------------------------------------------------===//
// Splits
//===----------------------------------------------------------------------===//

const Bounds Splits = {9, 5000, /*InlinerFollows=*/false};

TEST(AutoSplitTest, WorkInFrontOfTheTest) {
  const Asked A(MayEndEarly, Splits);
  EXPECT_EQ(A.name(), "AutoSplit");
  ASSERT_EQ(A.What.Kind, Plan::Split);
  EXPECT_EQ(A.What.Copies, 0u);
  // Both tests with what is in front of them, and the return; in front of two
  // calls and in the function itself.
  EXPECT_EQ(A.What.Where->Head.Size, 7u);
  EXPECT_EQ(A.What.Growth, 3 * 7u);
  EXPECT_FALSE(A.What.MayGoAway);
}

TEST(AutoSplitTest, OnlyIfItFits) {
  EXPECT_EQ(Asked(MayEndEarly, {9, 21}).What.Kind, Plan::Split);
  const Asked TooLarge(MayEndEarly, {9, 20});
  EXPECT_EQ(TooLarge.What.Kind, Plan::Nothing);
  EXPECT_TRUE(TooLarge.What.MayGoAway);
}

TEST(AutoSplitTest, LeavesComeFirst) {
  EXPECT_EQ(Asked(MayEndEarly, {9, 5000, true}).What.Kind, Plan::Leaves);
}

TEST(AutoSplitTest, NotIfCallsAreLittleOfIt) {
  // With 60 instructions it is as large as a body without a guard may be.
  std::string Large = MayEndEarly;
  const std::string Step = "  %m = sub i32 %n, 1\n";
  std::string Work;
  for (unsigned I = 0; I != 48; ++I)
    Work += "  store volatile i32 0, ptr %p\n";
  Large.insert(Large.find(Step), Work);
  EXPECT_EQ(Asked(Large, Splits).What.Kind, Plan::Split);
  Large.insert(Large.find(Step), "  store volatile i32 0, ptr %p\n");
  EXPECT_EQ(Asked(Large, Splits).What.Kind, Plan::Nothing);
}

TEST(AutoRingTest, GuardedAndStaggered) {
  const Asked A(hanoi());
  ASSERT_EQ(A.What.Kind, Plan::Ring);
  ASSERT_TRUE(A.What.Guard);
  EXPECT_EQ(A.What.Guard->Size, 3u);
  EXPECT_TRUE(A.What.Staggered);
  EXPECT_EQ(A.What.Copies, 5u);
}

TEST(AutoRingTest, LeavesWhatALoopMayMakeOnceIfItOnlyReads) {
  const std::string Calls = "  %l = load ptr, ptr %p\n"
                            "  call void @f(i32 1, ptr %l)\n"
                            "  call void @f(i32 2, ptr %l)\n";
  const auto Keeps = [](const std::string &Body) {
    const Asked A(voidWith(Body));
    EXPECT_TRUE(A.What.Kind == Plan::Ring && A.What.Guard);
    return A.What.KeepsHoistableCalls;
  };
  EXPECT_TRUE(Keeps(Calls));
  EXPECT_TRUE(Keeps(Calls + "  %x = call i32 @pure(i32 %n)\n"));
  EXPECT_FALSE(Keeps(Calls + "  store i32 %n, ptr %p\n"));
  EXPECT_FALSE(Keeps(Calls + "  %v = load volatile i32, ptr %p\n"));
  EXPECT_FALSE(Keeps(Calls + "  call void @other()\n"));
}

TEST(AutoRingTest, AsManyCopiesAsFit) {
  // A body is 8 and a guard 3.  A copy has that of the next two inlined: the
  // last one 8 + 3 + 3, the one before 8 + 14 + 3, then 8 + 25 + 14, ...
  const unsigned Growth[] = {14, 25, 47, 80, 135};
  for (unsigned Copies = 2; Copies <= 5; ++Copies) {
    const unsigned Exact = Growth[Copies - 1];
    const Asked Fits(hanoi(), {7, Exact});
    EXPECT_EQ(Fits.What.Copies, Copies);
    EXPECT_EQ(Fits.What.Growth, Exact);
    const Asked TooMany(hanoi(), {7, Exact - 1});
    EXPECT_EQ(TooMany.What.Copies, Copies == 2 ? 0 : Copies - 1);
    const Asked Bound(hanoi(), {Copies, 550});
    EXPECT_EQ(Bound.What.Copies, Copies);
    EXPECT_EQ(Bound.What.Growth, Exact);
  }
  EXPECT_EQ(Asked(hanoi(), {7, 100}).What.Copies, 4u);
}

TEST(AutoRingTest, VariablesInMemoryTakeCopies) {
  // Bodies that share the frame: 1, 2, 4, 7, 12.  1024 bytes fit.
  const ScopedOption<unsigned> AnyFrame("inlinerecursion-max-frame-size", 9999);
  EXPECT_EQ(Asked(hanoi("  %x = alloca [85 x i8]")).What.Copies, 5u);
  EXPECT_EQ(Asked(hanoi("  %x = alloca [86 x i8]")).What.Copies, 4u);
  EXPECT_EQ(Asked(hanoi("  %x = alloca [256 x i8]")).What.Copies, 3u);
  EXPECT_EQ(Asked(hanoi("  %x = alloca [512 x i8]")).What.Copies, 2u);
  EXPECT_EQ(Asked(hanoi("  %x = alloca [513 x i8]")).name(), "AutoTooLarge");
}

TEST(AutoRingTest, AtMostThreeCopiesInALoop) {
  const std::string Loop = R"(
define void @f(i32 %n, ptr %p) {
entry:
  br label %head
head:
  %i = phi i32 [ 0, %entry ], [ %j, %body ]
  %more = icmp slt i32 %i, %n
  br i1 %more, label %body, label %exit
body:
  call void @f(i32 %i, ptr %p)
  %j = add i32 %i, 1
  br label %head
exit:
  ret void
}
)";
  EXPECT_EQ(Asked(Loop).What.Copies, 3u);
  EXPECT_EQ(Asked(Loop, {2, 550}).What.Copies, 2u);
}

/// A loop from the entry on, around f(value), as a tail call leaves it: over
/// \p Carried, and back to the start with \p Next.
std::string tailLoop(const std::string &Carried, const std::string &Next,
                     const std::string &Before = "") {
  return Prelude + std::string(R"(
define i32 @f(i32 %n, i32 %k) {
entry:
)") + Before +
         R"(
  br label %head
head:
  %m = phi i32 [ %n, %entry ], [ %next, %body ]
)" + Carried +
         R"(
  %none = icmp eq i32 %m, 0
  br i1 %none, label %exit, label %body
body:
  %below = load i32, ptr @g
  %r = call i32 @f(i32 %below, i32 0)
  store i32 %r, ptr @g
)" + Next +
         R"(
  br label %head
exit:
  ret i32 %m
}
)";
}

TEST(AutoRingTest, MoreCopiesInATailLoopOfThreeValues) {
  const Bounds Nine = {12, 900};
  const std::string Sum = "  %s = phi i32 [ 0, %entry ], [ %r, %body ]\n";
  const std::string Again = "  %next = add i32 %m, -1\n";
  EXPECT_EQ(Asked(tailLoop("", Again), Nine).What.Copies, 9u);
  const std::string Sums =
      Sum + "  %t = phi i32 [ 0, %entry ], [ %s, %body ]\n";
  EXPECT_EQ(Asked(tailLoop(Sum, Again), Nine).What.Copies, 9u);
  // Another one to be kept while the call runs.
  EXPECT_EQ(Asked(tailLoop(Sums, Again), Nine).What.Copies, 5u);
  // A fourth, in a PHI or as an argument that every copy has its own of.
  EXPECT_EQ(
      Asked(tailLoop(Sums + "  %u = phi i32 [ 0, %entry ], [ %t, %body ]\n",
                     Again),
            Nine)
          .What.Copies,
      3u);
  EXPECT_EQ(
      Asked(tailLoop(Sums, "  %next = sub i32 %m, %k\n"), Nine).What.Copies,
      3u);
  // With a second call, a third is too many.
  const std::string Second = "  store volatile i32 0, ptr @g\n"
                             "  %r2 = call i32 @f(i32 %below, i32 1)\n"
                             "  store i32 %r2, ptr @g\n";
  EXPECT_EQ(Asked(tailLoop(Sum, Second + Again), Nine).What.Copies, 7u);
  EXPECT_EQ(Asked(tailLoop(Sums, Second + Again), Nine).What.Copies, 4u);
  // A loop that something stands in front of is not all of the function.
  EXPECT_EQ(
      Asked(tailLoop(Sum, Again, "  %x = add i32 %n, 1\n"), Nine).What.Copies,
      3u);
}

TEST(AutoRingTest, SixCopiesInATailLoopBelowO3) {
  const std::string Loop = tailLoop("", "  %next = add i32 %m, -1\n");
  Bounds Limits = getBoundsBelowO3();
  Limits.FunctionGrowth = getDefaultBounds().FunctionGrowth;
  EXPECT_EQ(Asked(Loop, Limits).What.Copies, 6u);
  Limits.RingCopies = 7;
  EXPECT_EQ(Asked(Loop, Limits).What.Copies, 7u);
  Limits.Copies = 4;
  EXPECT_EQ(Asked(Loop, Limits).What.Copies, 4u);
}

/// A loop that keeps %m, hands on a sum, and needs %k, for which its call is
/// given \p Handed, made by \p Before.
std::string keepingLoop(const std::string &Type, const std::string &Handed,
                        const std::string &Before = "") {
  return Prelude + std::string("@k = global ") + Type + R"( zeroinitializer
define i32 @f(i32 %n, )" +
         Type + R"( %k) {
entry:
  br label %head
head:
  %m = phi i32 [ %n, %entry ], [ %next, %on ]
  %s = phi i32 [ 0, %entry ], [ %v, %on ]
  %none = icmp eq i32 %m, 0
  br i1 %none, label %exit, label %body
body:
  %below = load i32, ptr @g
  store )" +
         Type + " %k, ptr @k\n" + Before + R"(
  %c = icmp slt i32 %below, 9
  br i1 %c, label %made, label %on
made:
  %r = call i32 @f(i32 %below, )" +
         Type + " " + Handed + R"()
  br label %on
on:
  %v = phi i32 [ %s, %body ], [ %r, %made ]
  %next = add i32 %m, -1
  br label %head
exit:
  ret i32 %s
}
)";
}

TEST(AutoRingTest, FewerCopiesOfATailLoopThatKeepsTwoValues) {
  const Bounds Nine = {12, 900};
  // The same for all copies, or not far from it.
  EXPECT_EQ(Asked(keepingLoop("i32", "%k"), Nine).What.Copies, 9u);
  EXPECT_EQ(
      Asked(keepingLoop("i32", "%less", "  %less = sub i32 %k, 1\n"), Nine)
          .What.Copies,
      9u);
  EXPECT_EQ(Asked(keepingLoop("double", "%k"), Nine).What.Copies, 9u);
  // Each copy has its own.
  EXPECT_EQ(
      Asked(keepingLoop("i32", "%rest", "  %rest = sub i32 %k, %below\n"), Nine)
          .What.Copies,
      5u);
  EXPECT_EQ(
      Asked(keepingLoop("double", "%half", "  %half = fmul double %k, 0.5\n"),
            Nine)
          .What.Copies,
      5u);
}

TEST(AutoRefusalTest, ALargeBody) {
  std::string Large = hanoi();
  const std::string Store = "  store i32 %a, ptr @g\n";
  // A body is 8.
  for (unsigned I = 0; I != 72; ++I)
    Large.insert(Large.find(Store), Store);
  EXPECT_EQ(Asked(Large).name(), "AutoRing");
  Large.insert(Large.find(Store), Store);
  EXPECT_EQ(Asked(Large).name(), "AutoLargeBody");
}

TEST(AutoRefusalTest, ALargeBodyBelowO3) {
  Bounds Limits = getBoundsBelowO3();
  EXPECT_EQ(Limits.FunctionGrowth, 300u);
  EXPECT_EQ(Limits.ModuleGrowth, 1500u);
  // Leaves are another matter.
  Limits.InlinerFollows = false;
  auto AskOf = [&](unsigned Size, const Bounds &Limits) {
    std::string Body;
    // What is there without it is 8 instructions.
    for (unsigned I = 8; I != Size; ++I)
      Body += "  store volatile i32 0, ptr @g\n";
    return Asked(voidWith(Body + CallAndStore + CallAndStore), Limits).name();
  };
  EXPECT_EQ(AskOf(48, Limits), "AutoRing");
  EXPECT_EQ(AskOf(49, Limits), "AutoLargeBody");
  Limits.BodySize = getDefaultBounds().BodySize;
  EXPECT_EQ(AskOf(49, Limits), "AutoRing");
}

TEST(AutoRefusalTest, ABodyThatBecomesLarge) {
  // The two calls of f and what they need are 9 instructions, small is 36.
  std::string Small = "define internal void @small() {\n";
  for (unsigned I = 0; I != 35; ++I)
    Small += "  store volatile i32 0, ptr @g\n";
  Small += "  ret void\n}\n";
  const std::string Inlined = "  call void @small()\n";
  auto Ask = [&](const std::string &Body, bool InlinerFollows = true) {
    return Asked(voidWith(Body + CallAndStore + CallAndStore) + Small,
                 {7, 400, InlinerFollows});
  };
  EXPECT_EQ(Ask(Inlined).name(), "AutoRing");
  EXPECT_EQ(Ask(Inlined + Inlined).name(), "AutoLargeBody");
  EXPECT_EQ(Ask(Inlined + Inlined, /*InlinerFollows=*/false).name(),
            "AutoRing");
  // It is multiplied with the rest.
  EXPECT_LT(Ask(Inlined).What.Copies, Ask("").What.Copies);
}

/// Calls for the left and the right part, each if \p Test of it holds.
std::string walk(const std::string &Second, const std::string &Filler = "") {
  return Prelude + std::string(R"(
define void @f(ptr %p) {
entry:
  %l = load ptr, ptr %p
  %none = icmp eq ptr %l, null
  br i1 %none, label %middle, label %left
left:
  call void @f(ptr %l)
  br label %middle
middle:
  store i32 1, ptr @g
)") + Filler +
         Second;
}

TEST(AutoRingTest, WithoutAGuardIfEachCallHasATestOfItsOwn) {
  const std::string Tested = R"(
  %rp = getelementptr ptr, ptr %p, i64 1
  %r = load ptr, ptr %rp
  %done = icmp eq ptr %r, null
  br i1 %done, label %exit, label %right
right:
  call void @f(ptr %r)
  store i32 2, ptr @g
  br label %exit
exit:
  ret void
}
)";
  const Asked Walk(walk(Tested));
  EXPECT_EQ(Walk.name(), "AutoRing");
  EXPECT_FALSE(Walk.What.Guard);
  EXPECT_TRUE(Walk.What.Staggered);
  std::string Filler;
  for (unsigned I = 0; I != 46; ++I)
    Filler += "  store i32 3, ptr @g\n";
  EXPECT_EQ(Asked(walk(Tested, Filler)).name(), "AutoRing");
  EXPECT_EQ(Asked(walk(Tested, Filler + "  store i32 3, ptr @g\n")).name(),
            "AutoNoTest");
  // The second call is always made.
  EXPECT_EQ(Asked(walk("  call void @f(ptr %l)\n"
                       "  store i32 2, ptr @g\n  ret void\n}\n"))
                .name(),
            "AutoNoTest");
}

TEST(AutoRefusalTest, CallsThatExcludeEachOther) {
  EXPECT_EQ(Asked(Prelude + std::string(R"(
define void @f(i32 %n, ptr %p) {
entry:
  store i32 1, ptr @g
  switch i32 %n, label %exit [ i32 1, label %a
                               i32 2, label %b ]
a:
  call void @f(i32 2, ptr %p)
  store i32 2, ptr @g
  br label %exit
b:
  call void @f(i32 1, ptr %p)
  store i32 3, ptr @g
  br label %exit
exit:
  ret void
}
)"))
                .name(),
            "AutoSplit");
}

TEST(AutoSplitTest, NotOnceMore) {
  // A second function of the name has a number behind it.
  std::string Five;
  for (unsigned I = 0; I != 5; ++I)
    Five += CallAndStore;
  std::string Rest = voidWith(Five);
  EXPECT_EQ(Asked(Rest).name(), "AutoSplit");
  for (size_t At = 0; (At = Rest.find("@f(", At)) != std::string::npos;)
    Rest.replace(At, 2, "@f.recurse.rest.1");
  EXPECT_EQ(Asked(Rest, Wide, "f.recurse.rest.1").name(), "AutoSelfCalls");
}

TEST(AutoRingTest, ALoopOfALeafIsNotInTheWay) {
  EXPECT_EQ(Asked(R"(
define void @f(i32 %n, ptr %p) {
entry:
  %small = icmp ult i32 %n, 9
  br i1 %small, label %leaf, label %rec
leaf:
  %i = phi i32 [ 0, %entry ], [ %j, %leaf ]
  store i32 %i, ptr %p
  %j = add i32 %i, 1
  %more = icmp ult i32 %j, %n
  br i1 %more, label %leaf, label %exit
rec:
  %m = lshr i32 %n, 1
  call void @f(i32 %m, ptr %p)
  call void @f(i32 %m, ptr %p)
  store i32 %m, ptr %p
  br label %exit
exit:
  ret void
}
)")
                .What.Kind,
            Plan::Ring);
}

/// A function without a test at its entry, whose call is made in some trips of
/// a loop, which ends by \p Condition of %j, the number of the next trip.
std::string scan(const std::string &Condition, unsigned Stores = 0) {
  std::string Filler;
  for (unsigned I = 0; I != Stores; ++I)
    Filler += "  store i32 %n, ptr %p\n";
  return Prelude + std::string(R"(
define void @f(i32 %n, ptr %p) {
entry:
)") + Filler +
         R"(  store i32 %n, ptr %p
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %latch ]
  %some = call i1 @more()
  br i1 %some, label %rec, label %latch
rec:
  call void @f(i32 %i, ptr %p)
  br label %latch
latch:
  %j = add i32 %i, 1
  %last = icmp )" +
         Condition + R"(
  br i1 %last, label %exit, label %loop
exit:
  ret void
}
)";
}

TEST(AutoRingTest, WithoutAGuardIfTheLoopTests) {
  const Asked A(scan("eq i32 %j, %n"));
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_FALSE(A.What.Guard);
  EXPECT_EQ(A.What.Copies, 3u);
}

TEST(AutoRefusalTest, WithoutAGuardIfItIsLarge) {
  // The loop, its entry and the return have 11 instructions.
  EXPECT_EQ(Asked(scan("eq i32 %j, %n", 49)).name(), "AutoRing");
  EXPECT_EQ(Asked(scan("eq i32 %j, %n", 50)).name(), "AutoNoTest");
}

TEST(AutoRingTest, OfTwoCopiesIfBothLoopsAreUnrolled) {
  const Asked A(scan("eq i32 %j, 8"));
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_EQ(A.What.Copies, 2u);
}

TEST(AutoRingTest, OfTwoCopiesIfALoopThatIsLeftAtItsTopIsUnrolled) {
  // Its top is run once more than the call.
  auto Name = [](unsigned Trips) {
    return Asked(Prelude + std::string(R"(
define void @f(i32 %n, ptr %p) {
entry:
  store i32 %n, ptr %p
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %j, %latch ]
  %last = icmp eq i32 %i, )") +
                 std::to_string(Trips) + R"(
  br i1 %last, label %exit, label %body
body:
  %some = call i1 @more()
  br i1 %some, label %rec, label %latch
rec:
  call void @f(i32 %i, ptr %p)
  br label %latch
latch:
  %j = add i32 %i, 1
  br label %loop
exit:
  ret void
}
)")
        .name();
  };
  EXPECT_EQ(Name(11), "AutoRing");
  EXPECT_EQ(Name(12), "AutoUnrolledLoop");
}

TEST(AutoRefusalTest, ALoopToBeUnrolled) {
  EXPECT_EQ(Asked(scan("eq i32 %j, 16")).name(), "AutoUnrolledLoop");
}

//===----------------------------------------------------------------------===//
// Refusals
//===----------------------------------------------------------------------===//

/// A function @large of 46 instructions, one more than the inliner takes
/// anywhere.
std::string largeFunction(const std::string &Linkage, unsigned Stores = 45,
                          const std::string &Attributes = "") {
  std::string Large =
      "define " + Linkage + " void @large() " + Attributes + " {\n";
  for (unsigned I = 0; I != Stores; ++I)
    Large += "  store volatile i32 0, ptr @g\n";
  return Large + "  ret void\n}\n";
}

TEST(AutoRefusalTest, OnlyCallerOfALargeFunction) {
  const std::string F =
      voidWith("  call void @large()\n" + CallAndStore + CallAndStore);
  auto Name = [&](const std::string &Large, bool InlinerFollows = true) {
    return Asked(F + Large, {7, 550, InlinerFollows}).name();
  };
  EXPECT_EQ(Name(largeFunction("internal")), "AutoOnlyCaller");
  EXPECT_EQ(Name(largeFunction("internal", 2999)), "AutoOnlyCaller");
  // What is inlined everywhere, and nowhere.
  EXPECT_EQ(Name(largeFunction("internal", 44)), "AutoRing");
  EXPECT_EQ(Name(largeFunction("internal", 3000)), "AutoRing");
  EXPECT_EQ(Name(largeFunction("internal", 45, "noinline")), "AutoRing");
  EXPECT_EQ(Name(largeFunction("internal"), /*InlinerFollows=*/false),
            "AutoRing");
  // Others may call it, or do.
  EXPECT_EQ(Name(largeFunction("")), "AutoRing");
  EXPECT_EQ(Name(largeFunction("internal") +
                 "define void @h() {\n  call void @large()\n  ret void\n}\n"),
            "AutoRing");
}

TEST(AutoRefusalTest, OtherCallsTakeTheTime) {
  const std::string Small = "declare void @llvm.assume(i1)\n"
                            "declare i1 @llvm.is.constant.i32(i32)\n"
                            "define internal void @small() {\n  ret void\n}\n";
  const std::string Large = largeFunction("");
  const std::string Other = "  call void @other()\n";
  auto Name = [&](const std::string &Body, bool InlinerFollows = true,
                  const std::string &Rest = "") {
    return Asked(voidWith(Body + CallAndStore + CallAndStore, Rest) + Small +
                     Large,
                 {7, 550, InlinerFollows})
        .name();
  };
  EXPECT_EQ(Name(Other + Other), "AutoRing");
  EXPECT_EQ(Name(Other + Other + Other), "AutoOtherCalls");
  // What is inlined is no call any more, and what is not stays one.
  const std::string Inlined = "  call void @small()\n";
  EXPECT_EQ(Name(Other + Other + Inlined), "AutoRing");
  EXPECT_EQ(Name(Other + Other + Inlined, /*InlinerFollows=*/false),
            "AutoOtherCalls");
  EXPECT_EQ(Name(Other + Other + "  call void @large()\n"), "AutoOtherCalls");
  EXPECT_EQ(Name(Other + Other + "  call void %p()\n"), "AutoOtherCalls");
  // Neither intrinsics nor what is done on the way to an abort.
  EXPECT_EQ(Name(Other + Other +
                 "  call void @llvm.assume(i1 true)\n"
                 "  %c = call i1 @llvm.is.constant.i32(i32 %n)\n"),
            "AutoRing");
  EXPECT_EQ(Name(Other + Other +
                     "  %c = icmp ugt i32 %n, 9\n"
                     "  br i1 %c, label %fail, label %on\non:\n",
                 true, "fail:\n" + Other + "  unreachable\n"),
            "AutoRing");
}

TEST(AutoRingTest, FewCopiesBesideKnownCalls) {
  auto CopiesWith = [](const std::string &Call) {
    return Asked(voidWith(Call + CallAndStore + CallAndStore)).What.Copies;
  };
  EXPECT_EQ(CopiesWith(""), 5u);
  EXPECT_EQ(CopiesWith("  call void @other()\n"), 3u);
  EXPECT_EQ(CopiesWith("  call void %p()\n"), 5u);
}

/// f(n, p), which calls itself in one of two branches, with \p Left around the
/// first call; \p Behind the second one it goes on to an exit.
std::string path(const std::string &Left = CallAndStore,
                 const std::string &Behind = "  store i32 0, ptr %p\n") {
  return voidWith("  %c = trunc i32 %n to i1\n"
                  "  br i1 %c, label %left, label %right\n"
                  "left:\n" +
                  Left +
                  "  br label %exit\n"
                  "right:\n"
                  "  call void @f(i32 %n, ptr null)\n" +
                  Behind +
                  "  br label %done\n"
                  "done:");
}

const std::string CallInLoop = "  br label %loop\n"
                               "loop:\n" +
                               CallAndStore +
                               "  %again = call i1 @more()\n"
                               "  br i1 %again, label %loop, label %out\n"
                               "out:\n";

TEST(AutoRingTest, FewCopiesOfAPath) {
  const Asked A(path(), {9, 900, /*InlinerFollows=*/true});
  ASSERT_EQ(A.What.Kind, Plan::Ring);
  EXPECT_EQ(A.What.Copies, 4u);
}

TEST(AutoRingTest, TwoCopiesOfAPathWithALoop) {
  const Asked A(path(CallInLoop), {9, 900, /*InlinerFollows=*/true});
  ASSERT_EQ(A.What.Kind, Plan::Ring);
  EXPECT_EQ(A.What.Copies, 2u);
}

TEST(AutoRefusalTest, APathThatIsALoopOrInOne) {
  EXPECT_EQ(Asked(path(CallInLoop, "")).name(), "AutoPathInLoops");
  // Without the one loop or the other.
  EXPECT_NE(Asked(path(CallAndStore, "")).name(), "AutoPathInLoops");
  // The tail call is made after the loop.
  EXPECT_NE(Asked(voidWith(CallInLoop + Call)).name(), "AutoPathInLoops");
}

TEST(AutoRefusalTest, VariableArguments) {
  EXPECT_EQ(Asked(Prelude + std::string(R"(
define void @f(i32 %n, ...) {
  call void (i32, ...) @f(i32 %n)
  call void @other()
  ret void
}
)"))
                .name(),
            "AutoVariableArguments");
}

TEST(AutoRefusalTest, ReturnsTwice) {
  EXPECT_EQ(Asked(voidWith("  %j = call i32 @setjmp(ptr %p) returns_twice\n" +
                           CallAndStore))
                .name(),
            "AutoReturnsTwice");
}

TEST(AutoRefusalTest, ByValue) {
  EXPECT_EQ(Asked(voidWith("  call void @f(i32 %n, ptr byval(i64) %p)\n"
                           "  call void @other()\n",
                           "", "i32 %n, ptr byval(i64) %p"))
                .name(),
            "AutoByValue");
}

TEST(AutoRefusalTest, LargeFrame) {
  EXPECT_EQ(Asked(hanoi("  %x = alloca [256 x i8]")).What.Kind, Plan::Ring);
  const std::string Large = hanoi("  %x = alloca [257 x i8]");
  EXPECT_EQ(Asked(Large).name(), "AutoLargeFrame");
  // Not for who asks for it, either.
  std::string Requested = Large;
  Requested.replace(Requested.find(") {\nentry:"), 10,
                    ") \"inlinerecursion-copies\"=\"3\" {\nentry:");
  EXPECT_EQ(Asked(Requested).name(), "AutoLargeFrame");
  // Copies for states share no frame.
  Bounds States = Wide;
  States.StateGrowth = 1000;
  States.InlinerFollows = true;
  const std::string Entry = R"(
define void @main() {
  call void @f(i32 4, i32 1, i32 2, i32 3)
  ret void
}
)";
  EXPECT_EQ(Asked(Large + Entry, States).What.Kind, Plan::States);
}

TEST(AutoRefusalTest, FiveSelfCalls) {
  const std::string Four =
      CallAndStore + CallAndStore + CallAndStore + CallAndStore;
  EXPECT_EQ(Asked(voidWith(Four), {7, 5000}).name(), "AutoRing");
  // Copies of five are too many; the test in front of them is 3 instructions.
  const std::string Five = Four + CallAndStore;
  const Asked A(voidWith(Five), {7, 18});
  EXPECT_EQ(A.name(), "AutoSplit");
  EXPECT_EQ(A.What.Growth, 3 * 6u);
  EXPECT_EQ(Asked(voidWith(Five), {7, 17}).name(), "AutoSelfCalls");
}

TEST(AutoRefusalTest, FiveSelfCallsThatAreLittleOfIt) {
  // 75 instructions: 10, the test, and what ends it.
  std::string Five, Work;
  for (unsigned I = 0; I != 5; ++I)
    Five += CallAndStore;
  for (unsigned I = 0; I != 61; ++I)
    Work += "  store volatile i32 0, ptr @g\n";
  EXPECT_EQ(Asked(voidWith(Work + Five)).name(), "AutoSplit");
  EXPECT_EQ(Asked(voidWith(Work + Five + "  store i32 0, ptr @g\n")).name(),
            "AutoSelfCalls");
  const std::string Other = "  call void @other()\n";
  std::string Others;
  for (unsigned I = 0; I != 5; ++I)
    Others += Other;
  EXPECT_EQ(Asked(voidWith(Others + Five)).name(), "AutoSplit");
  EXPECT_EQ(Asked(voidWith(Others + Other + Five)).name(), "AutoSelfCalls");
}

TEST(AutoRefusalTest, ALoopBesideTheCalls) {
  const std::string Loop = "  br label %loop\nloop:\n"
                           "  store i32 %n, ptr %p\n"
                           "  %again = call i1 @more()\n"
                           "  br i1 %again, label %loop, label %end\nend:\n";
  EXPECT_EQ(Asked(voidWith(CallAndStore + Loop)).name(), "AutoWorkInLoop");
  EXPECT_EQ(Asked(voidWith(Loop + CallAndStore)).name(), "AutoWorkInLoop");
  EXPECT_EQ(Asked(voidWith(CallAndStore)).name(), "AutoRing");
}

TEST(AutoRingTest, BehindTheLoopThatATailCallHasBecome) {
  // Its own loop goes on where there is nothing to choose from.
  auto InLoop = [](const std::string &Entry) {
    return Prelude + std::string("define i32 @f(i32 %n, i32 %k) {\nentry:\n") +
           Entry + R"(  br label %tailrecurse
tailrecurse:
  %m = phi i32 [ %n, %entry ], [ %less, %same ]
  %none = icmp ult i32 %m, 2
  br i1 %none, label %exit, label %on
on:
  %less = sub i32 %m, 1
  %equal = call i1 @more()
  br i1 %equal, label %same, label %rec
same:
  br label %tailrecurse
rec:
  %a = call i32 @f(i32 %less, i32 %k)
  %b = call i32 @f(i32 %less, i32 %m)
  %c = call i32 @llvm.smax.i32(i32 %a, i32 %b)
  br label %exit
exit:
  %r = phi i32 [ %m, %tailrecurse ], [ %c, %rec ]
  ret i32 %r
}
declare i32 @llvm.smax.i32(i32, i32)
)";
  };
  const Asked A(InLoop(""));
  EXPECT_EQ(A.name(), "AutoRing");
  EXPECT_TRUE(A.What.Guard);
  EXPECT_EQ(Asked(InLoop("  call void @other()\n")).name(), "AutoWorkInLoop");
}

TEST(AutoRefusalTest, ACallBesideALoopIsTested) {
  // One call in every trip of a loop, and one in none.
  const Asked A(Prelude + std::string(R"(
define void @f(i32 %n) {
entry:
  %first = call i1 @more()
  br i1 %first, label %once, label %loop
once:
  %m = lshr i32 %n, 1
  call void @f(i32 %m)
  br label %loop
loop:
  %k = lshr i32 %n, 2
  call void @f(i32 %k)
  %again = call i1 @more()
  br i1 %again, label %loop, label %exit
exit:
  ret void
}
)"));
  EXPECT_EQ(A.What.Kind, Plan::Ring);
}

TEST(AutoRefusalTest, NoTestBeforeTheCalls) {
  EXPECT_EQ(Asked(Prelude + std::string(R"(
define void @f(i32 %n, ptr %p) {
entry:
  br label %loop
loop:
  call void @f(i32 %n, ptr %p)
  %again = call i1 @more()
  br i1 %again, label %loop, label %exit
exit:
  ret void
}
)"))
                .name(),
            "AutoNoTest");
}

TEST(AutoRefusalTest, TooLarge) {
  EXPECT_EQ(Asked(hanoi(), {7, 25}).name(), "AutoRing");
  EXPECT_EQ(Asked(hanoi(), {7, 24}).name(), "AutoTooLarge");
  EXPECT_EQ(Asked(hanoi(), {7, 24}).What.Kind, Plan::Nothing);
}

} // namespace
