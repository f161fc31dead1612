//===- StatesTest.cpp - What constants do along a recursion ---------------===//

#include "plugin/recursion/States.h"
#include "TestModule.h"
#include "llvm/IR/Constants.h"
#include <algorithm>

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// The states of @f of a module, in words: "n=3,_ " for one that knows its
/// first argument.
class Found {
public:
  explicit Found(const std::string &Assembly)
      : TM(Assembly), F(TM.function("f")),
        States(findStates(F, TM.functionAnalyses())) {}

  /// All of them, in the order in which they are met.
  std::string all() const {
    std::string Text;
    for (const State &S : States.States)
      Text += (Text.empty() ? "" : " ") + describe(S);
    return Text;
  }

  /// Where the states lead to, "0-1 1-2".
  std::string ways() const {
    std::string Text;
    for (unsigned From = 0; From != States.States.size(); ++From)
      for (const Successor &Next : States.States[From].Next)
        Text += (Text.empty() ? "" : " ") + std::to_string(From) + "-" +
                std::to_string(Next.State);
    return Text;
  }

  /// The states that the calls from outside enter, sorted.
  std::vector<unsigned> entries() const {
    std::vector<unsigned> Numbers;
    for (auto [Call, Number] : States.Entries)
      Numbers.push_back(Number);
    llvm::sort(Numbers);
    return Numbers;
  }

private:
  TestModule TM;

public:
  Function &F;
  const StateSet States;

private:
  static std::string describe(const State &S) {
    std::string Text;
    raw_string_ostream OS(Text);
    for (const Constant *C : S.Arguments) {
      OS << (Text.empty() ? "" : ",");
      if (!C)
        OS << "_";
      else
        C->printAsOperand(OS, /*PrintType=*/false);
      OS.flush();
    }
    return Text;
  }
};

/// @f(i32 %n, i32 %k), which ends where \p Stop says so (`%stop`) and else
/// calls itself with what \p Body computes, `%m` and `%l`; \p Entries call it
/// from
/// @main, which gets %x.
std::string counting(const std::string &Stop, const std::string &Body,
                     const std::string &Entries,
                     const std::string &Call = "call i32 @f(i32 %m, i32 %l)") {
  return R"(
@table = constant [4 x i32] [i32 2, i32 0, i32 3, i32 1]
@data = global [4 x i32] zeroinitializer
@other = global i32 0
@own = thread_local global i32 0
declare i1 @more()
declare i32 @llvm.smin.i32(i32, i32)
declare i32 @__gxx_personality_v0(...)
define i32 @f(i32 %n, i32 %k) {
)" + Stop +
         R"(
  br i1 %stop, label %end, label %rec
rec:
)" + Body +
         "\n  %r = " + Call + R"(
  %s = add i32 %r, %n
  ret i32 %s
end:
  ret i32 %k
}
define void @main(i32 %x) {
)" + Entries +
         "\n  ret void\n}\n";
}

const char *const AtZero = "  %stop = icmp eq i32 %n, 0";
const char *const AtRandom = "  %stop = call i1 @more()";
const char *const Down =
    "  %m = sub i32 %n, 1\n  %l = add i32 %k, %n\n  store i32 %k, ptr @other";
const char *const From3 = "  %a = call i32 @f(i32 3, i32 %x)";

TEST(StatesTest, CountersDownAndUp) {
  const Found Downwards(counting(AtZero, Down, From3));
  EXPECT_EQ(Downwards.all(), "3,_ 2,_ 1,_ 0,_");
  EXPECT_EQ(Downwards.ways(), "0-1 1-2 2-3");
  EXPECT_EQ(Downwards.entries(), std::vector<unsigned>({0}));
  EXPECT_EQ(Downwards.States.Growing, nullptr);
  EXPECT_TRUE(Downwards.States.isKnown(0));
  EXPECT_FALSE(Downwards.States.isKnown(1));

  const Found Upwards(counting("  %stop = icmp sge i32 %n, 9",
                               "  %m = add i32 %n, 3\n  %l = add i32 %k, %n",
                               "  %a = call i32 @f(i32 1, i32 %x)"));
  EXPECT_EQ(Upwards.all(), "1,_ 4,_ 7,_ 10,_");
}

TEST(StatesTest, CyclesClose) {
  const Found Axis(counting(AtRandom,
                            "  %up = add i32 %n, 1\n  %m = urem i32 %up, 3\n"
                            "  %l = add i32 %k, %n",
                            "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_EQ(Axis.all(), "0,_ 1,_ 2,_");
  EXPECT_EQ(Axis.ways(), "0-1 1-2 2-0");

  const Found Side(counting(AtRandom,
                            "  %m = xor i32 %n, 1\n  %l = add i32 %k, %n",
                            "  %a = call i32 @f(i32 1, i32 %x)"));
  EXPECT_EQ(Side.all(), "1,_ 0,_");
  EXPECT_EQ(Side.ways(), "0-1 1-0");

  const Found Flag(R"(
define void @f(i1 %flag, ptr %p) {
  %next = load ptr, ptr %p
  %stop = icmp eq ptr %next, null
  br i1 %stop, label %end, label %rec
rec:
  %not = xor i1 %flag, true
  call void @f(i1 %not, ptr %next)
  br label %end
end:
  ret void
}
define void @main(ptr %p) {
  call void @f(i1 true, ptr %p)
  ret void
}
)");
  EXPECT_EQ(Flag.all(), "true,_ false,_");
  EXPECT_EQ(Flag.ways(), "0-1 1-0");
}

TEST(StatesTest, TablesAndArithmetic) {
  const Found Table(
      counting(AtRandom,
               "  %at = getelementptr [4 x i32], ptr @table, i32 0, i32 %n\n"
               "  %m = load i32, ptr %at\n  %l = add i32 %k, %n",
               "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_EQ(Table.all(), "0,_ 2,_ 3,_ 1,_");
  EXPECT_EQ(Table.ways(), "0-1 1-2 2-3 3-0");

  // What stands in a variable is not known.
  const Found Variable(
      counting(AtRandom,
               "  %at = getelementptr [4 x i32], ptr @data, i32 0, i32 %n\n"
               "  %m = load i32, ptr %at\n  %l = add i32 %k, %n",
               "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_TRUE(Variable.States.empty());

  const Found Least(counting(
      AtRandom,
      "  %up = add i32 %n, 2\n  %m = call i32 @llvm.smin.i32(i32 %up, i32 5)\n"
      "  %l = add i32 %k, %n",
      "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_EQ(Least.all(), "0,_ 2,_ 4,_ 5,_");

  const Found Chosen(
      counting(AtRandom,
               "  %big = icmp sgt i32 %n, 4\n  %up = add i32 %n, 2\n"
               "  %m = select i1 %big, i32 1, i32 %up\n  %l = add i32 %k, %n",
               "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_EQ(Chosen.all(), "0,_ 2,_ 4,_ 6,_ 1,_ 3,_ 5,_");
}

/// @f(ptr %p, i32 %n), which calls itself with what \p Passed says.
std::string withPointer(const std::string &Passed, const std::string &Entry) {
  return R"(
@constant = constant [4 x i32] zeroinitializer
@variable = global i32 0
@own = thread_local global i32 0
declare i32 @ascending(i32, i32)
define void @f(ptr %p, i32 %n) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %rec
rec:
  %m = lshr i32 %n, 1
  %c = call i32 %p(i32 %n, i32 1)
  call void @f(ptr )" +
         Passed + R"(, i32 %m)
  br label %end
end:
  ret void
}
define void @main(i32 %x) {
  call void @f(ptr )" +
         Entry + R"(, i32 %x)
  ret void
}
)";
}

TEST(StatesTest, Addresses) {
  EXPECT_EQ(Found(withPointer("%p", "@ascending")).all(), "@ascending,_");
  EXPECT_EQ(Found(withPointer("%p", "null")).all(), "null,_");
  EXPECT_EQ(Found(withPointer("null", "@ascending")).all(),
            "@ascending,_ null,_");
  EXPECT_EQ(Found(withPointer("%p", "@constant")).all(), "@constant,_");
  // Where data is tells nothing.
  EXPECT_TRUE(Found(withPointer("%p", "@variable")).States.empty());
  EXPECT_TRUE(Found(withPointer("@variable", "@ascending")).States.empty());
  // Another one in each thread.
  EXPECT_TRUE(Found(withPointer("%p", "@own")).States.empty());
}

TEST(StatesTest, SeveralArguments) {
  const Found Both(counting(
      AtZero,
      "  %m = sub i32 %n, 1\n  %l = xor i32 %k, 1\n  %z = add i32 %m, %l",
      "  %a = call i32 @f(i32 2, i32 0)"));
  EXPECT_EQ(Both.all(), "2,0 1,1 0,0");
  EXPECT_TRUE(Both.States.isKnown(1));

  // One of them is lost on the way, and the other is followed without it.
  const Found One(counting(AtZero,
                           "  %m = sub i32 %n, 1\n  %l = load i32, ptr @other",
                           "  %a = call i32 @f(i32 2, i32 0)"));
  EXPECT_EQ(One.all(), "2,_ 1,_ 0,_");
  EXPECT_FALSE(One.States.isKnown(1));
  EXPECT_EQ(One.States.Growing, nullptr);
}

/// Eight divisions of \p Argument, which are stored.
std::string working(const std::string &Argument, char First = 'A') {
  std::string Body;
  for (char Name = First; Name != First + 8; ++Name)
    Body += std::string("  %") + Name + " = sdiv i32 " + Argument +
            ", 7\n  store volatile i32 %" + Name + ", ptr @other\n";
  return Body;
}

TEST(StatesTest, IdleArgumentsDropOut) {
  const std::string Step = "  %m = xor i32 %n, 1\n  %k1 = add i32 %k, 1\n"
                           "  %l = call i32 @llvm.smin.i32(i32 %k1, i32 5)\n";
  const std::string Enter = "  %a = call i32 @f(i32 0, i32 0)";
  EXPECT_EQ(Found(counting(AtRandom, Step + working("%n"), Enter)).all(),
            "0,_ 1,_");
  // What saves as much stays.
  EXPECT_EQ(Found(counting(AtRandom, Step + working("%n") + working("%k1", 'I'),
                           Enter))
                .States.States.size(),
            7u);
}

// What every call passes is found without states, and is no reason to do
// without others.
TEST(StatesTest, OneStateForAllIsNotEnough) {
  std::string Text =
      counting(AtZero,
               "  %m = sub i32 %n, 1\n  %l = add i32 %k, 0\n" + working("%k") +
                   working("%k", 'I') + working("%k", 'Q') + working("%k", 'b'),
               "  %a = call i32 @f(i32 3, i32 8)");
  EXPECT_EQ(Found(Text).all(), "_,8");
  Text.replace(Text.find("define i32 @f"), 13, "define internal i32 @f");
  EXPECT_EQ(Found(Text).all(), "3,8 2,8 1,8 0,8");
}

/// A second self call, which passes something unknown where n is \p When.
std::string losing(const std::string &When) {
  return "  %m = sub i32 %n, 1\n  %l = add i32 %k, 1\n  %w = icmp eq i32 %n, " +
         When +
         "\n  br i1 %w, label %lose, label %keep\nlose:\n"
         "  %u = load i32, ptr @other\n  %q = call i32 @f(i32 %u, i32 %l)\n"
         "  br label %keep\nkeep:";
}

TEST(StatesTest, WhatIsLostAtOneCallIsLost) {
  EXPECT_TRUE(Found(counting(AtZero, losing("2"), From3)).States.empty());
  // Unless that call is never made.
  EXPECT_EQ(Found(counting(AtZero, losing("7"), From3)).all(),
            "3,_ 2,_ 1,_ 0,_");
}

TEST(StatesTest, TooManyValuesDropOut) {
  // Towards a limit that nobody knows.
  const Found Counter(counting("  %stop = icmp eq i32 %n, %k",
                               "  %m = add i32 %n, 1\n  %l = add i32 %k, 0",
                               "  %a = call i32 @f(i32 0, i32 %x)"));
  EXPECT_TRUE(Counter.States.empty());
  EXPECT_EQ(Counter.States.Growing, Counter.F.getArg(0));

  // What has few values stays.
  const Found Beside(counting(AtRandom,
                              "  %m = add i32 %n, 1\n  %l = xor i32 %k, 1",
                              "  %a = call i32 @f(i32 0, i32 1)"));
  EXPECT_EQ(Beside.all(), "_,1 _,0");
  EXPECT_EQ(Beside.States.Growing, Beside.F.getArg(0));

  // The number of a node in a tree.
  const Found Node(counting(AtRandom,
                            "  %twice = shl i32 %n, 1\n"
                            "  %m = add i32 %twice, 1\n"
                            "  %q = call i32 @f(i32 %twice, i32 %k)\n"
                            "  %l = load i32, ptr @other",
                            "  %a = call i32 @f(i32 1, i32 %x)"));
  EXPECT_TRUE(Node.States.empty());
  EXPECT_EQ(Node.States.Growing, Node.F.getArg(0));
}

/// Two entries, of which one alone would be the first of too many states.
std::string enteredTwice(const std::string &UseListOrder) {
  return counting("  %stop = icmp eq i32 %n, 200",
                  "  %m = add i32 %n, 1\n  %l = add i32 %k, %n",
                  "  %a = call i32 @f(i32 100, i32 %x)") +
         "define void @again(i32 %x) {\n  %a = call i32 @f(i32 0, i32 %x)\n"
         "  ret void\n}\n" +
         UseListOrder;
}

TEST(StatesTest, TheOrderOfUsesDoesNotCount) {
  // What the first call has led to is there for the second one.
  const Found InOrder(enteredTwice("uselistorder ptr @f, { 1, 2, 0 }"));
  ASSERT_EQ(InOrder.States.States.size(), 201u);
  const Found Reversed(enteredTwice("uselistorder ptr @f, { 1, 0, 2 }"));
  EXPECT_EQ(Reversed.all(), InOrder.all());
  EXPECT_EQ(Reversed.ways(), InOrder.ways());

  auto Callers = [](const Found &What) {
    std::vector<std::string> Names;
    for (auto [Call, Number] : What.States.Entries)
      Names.push_back(Call->getFunction()->getName().str());
    return Names;
  };
  EXPECT_EQ(Callers(InOrder), std::vector<std::string>({"main", "again"}));
  EXPECT_EQ(Callers(Reversed), Callers(InOrder));
}

TEST(StatesTest, AsManyAsAllowed) {
  auto From = [](unsigned Begin) {
    return "  %a = call i32 @f(i32 " + std::to_string(Begin) + ", i32 %x)";
  };
  EXPECT_EQ(
      Found(counting(AtZero, Down, From(MaxStates - 1))).States.States.size(),
      MaxStates);
  EXPECT_TRUE(Found(counting(AtZero, Down, From(MaxStates))).States.empty());
  // From each call from outside as many, of those that are new.
  auto FromBoth = [&](unsigned First, unsigned Second) {
    return Found(counting(AtZero, Down,
                          From(Second) + "\n" + "  %b = call i32 @f(i32 " +
                              std::to_string(First) + ", i32 %x)"))
        .States.States.size();
  };
  EXPECT_EQ(std::max(FromBoth(MaxStates - 1, 2 * MaxStates - 1),
                     FromBoth(2 * MaxStates - 1, MaxStates - 1)),
            2 * MaxStates);
}

TEST(StatesTest, LargeFunctionsAreNotLookedAtForLong) {
  std::string Long;
  const unsigned Size = MaxWork / 100;
  for (unsigned I = 0; I != Size; ++I)
    Long += "  store i32 %k, ptr @other\n";
  auto StatesFrom = [&](const std::string &Begin) {
    return Found(counting(AtZero,
                          Long + "  %m = sub i32 %n, 1\n  %l = add i32 %k, 0",
                          "  %a = call i32 @f(i32 " + Begin + ", i32 %x)"))
        .States.States.size();
  };
  EXPECT_EQ(StatesFrom("50"), 51u);
  EXPECT_EQ(StatesFrom("110"), 0u);
}

TEST(StatesTest, CallsFromOutsideShareStates) {
  const Found Shared(counting(AtZero, Down,
                              "  %a = call i32 @f(i32 2, i32 %x)\n"
                              "  %b = call i32 @f(i32 4, i32 %x)\n"
                              "  %c = call i32 @f(i32 3, i32 %x)\n"
                              "  %d = call i32 @f(i32 %x, i32 %x)"));
  EXPECT_EQ(Shared.States.States.size(), 5u);
  EXPECT_EQ(Shared.entries().size(), 3u);
  for (auto [Call, Number] : Shared.States.Entries)
    EXPECT_EQ(Call->getArgOperand(0),
              Shared.States.States[Number].Arguments[0]);
}

TEST(StatesTest, Invokes) {
  const std::string Invoking = R"(
declare i32 @__gxx_personality_v0(...)
define void @f(i32 %n, ptr %p) personality ptr @__gxx_personality_v0 {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %rec
rec:
  %m = sub i32 %n, 1
  invoke void @f(i32 %m, ptr %p) to label %end unwind label %pad
end:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  %h = sub i32 %n, 2
  call void @f(i32 %h, ptr %p)
  resume { ptr, i32 } %l
}
define void @main(ptr %p) personality ptr @__gxx_personality_v0 {
  invoke void @f(i32 2, ptr %p) to label %end unwind label %pad
end:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}
)";
  // Of one: n - 2 is -1, and no end of it.
  EXPECT_TRUE(Found(Invoking).States.empty());
  std::string Half = Invoking;
  Half.replace(Half.find("%h = sub i32 %n, 2"), 18, "%h = lshr i32 %n, 1");
  const Found Finite(Half);
  EXPECT_EQ(Finite.all(), "2,_ 1,_ 0,_");
  EXPECT_EQ(Finite.ways(), "0-1 0-1 1-2 1-2");
  ASSERT_EQ(Finite.entries(), std::vector<unsigned>({0}));
  EXPECT_TRUE(isa<InvokeInst>(Finite.States.Entries.front().first));
}

TEST(StatesTest, UndefinedOperandsAreNoConstants) {
  for (const char *Operand : {"undef", "poison"}) {
    const std::string Passed = std::string("(i32 ") + Operand + ", i32 %x)";
    EXPECT_TRUE(Found(counting(AtZero, Down, "  %a = call i32 @f" + Passed))
                    .States.empty());
    EXPECT_TRUE(
        Found(counting(AtZero, "  %l = add i32 %k, 1", From3,
                       std::string("call i32 @f(i32 ") + Operand + ", i32 %l)"))
            .States.empty());
  }
}

TEST(StatesTest, NoConstantsNoStates) {
  const Found Unknown(
      counting(AtZero, Down, "  %a = call i32 @f(i32 %x, i32 %x)"));
  EXPECT_TRUE(Unknown.States.empty());
  EXPECT_FALSE(isEnteredWithConstants(Unknown.F));
  EXPECT_EQ(Unknown.States.getSize(), 0u);
  EXPECT_EQ(Unknown.States.getSavedShare(), 0.0);

  const Found Nobody(counting(AtZero, Down, ""));
  EXPECT_TRUE(Nobody.States.empty());
  // Of itself does not count.
  EXPECT_FALSE(isEnteredWithConstants(
      Found(counting(AtZero, "", "", "call i32 @f(i32 3, i32 5)")).F));
  EXPECT_TRUE(isEnteredWithConstants(Found(counting(AtZero, Down, From3)).F));
}

TEST(StatesTest, SelfCallsMayBeginAnew) {
  const Found Anew(counting(AtRandom, "  %l = add i32 %k, %n", From3,
                            "call i32 @f(i32 7, i32 %l)"));
  EXPECT_EQ(Anew.all(), "3,_ 7,_");
  EXPECT_EQ(Anew.ways(), "0-1 1-1");
}

TEST(StatesTest, WhatCannotBeClonedHasNoStates) {
  std::string Once =
      counting(AtZero, std::string("  call void @once()\n") + Down, From3) +
      "declare void @once() noduplicate\n";
  EXPECT_TRUE(Found(Once).States.empty());
  Once.replace(Once.find(" noduplicate"), 12, "");
  EXPECT_FALSE(Found(Once).States.empty());
}

/// @f(n), which calls itself for each number below n.
std::string forEach(bool Invokes) {
  const std::string Call = "void @f(i32 %i, ptr %p)";
  return R"(
declare i32 @__gxx_personality_v0(...)
define void @f(i32 %n, ptr %p) personality ptr @__gxx_personality_v0 {
entry:
  %any = icmp sgt i32 %n, 0
  br i1 %any, label %loop, label %end
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %back ]
  store i32 %i, ptr %p
)" +
         (Invokes ? "  invoke " + Call + " to label %back unwind label %pad\n"
                  : "  call " + Call + "\n  br label %back\n") +
         R"(
back:
  %next = add nuw nsw i32 %i, 1
  %done = icmp eq i32 %next, %n
  br i1 %done, label %end, label %loop
end:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
}
define void @main(ptr %p) {
  call void @f(i32 3, ptr %p)
  ret void
}
)";
}

TEST(StatesTest, EachTripOfALoopLeadsToAState) {
  const Found Below(forEach(/*Invokes=*/false));
  EXPECT_EQ(Below.all(), "3,_ 0,_ 1,_ 2,_");
  EXPECT_EQ(Below.ways(), "0-1 0-2 0-3 2-1 3-1 3-2");
  const State &First = Below.States.States.front();
  for (const Successor &Next : First.Next)
    EXPECT_EQ(Next.Selector, std::optional<unsigned>(0));
  // One trip needs no test.
  EXPECT_EQ(Below.States.States[2].Next.front().Selector, std::nullopt);
  // What comes next of an invoke is not the same block for all trips.
  EXPECT_TRUE(Found(forEach(/*Invokes=*/true)).States.empty());
}

} // namespace
