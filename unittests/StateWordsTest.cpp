//===- StateWordsTest.cpp - States, told to the user ----------------------===//

#include "plugin/policy/StateWords.h"
#include "TestModule.h"
#include "plugin/recursion/States.h"
#include "llvm/IR/Constants.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// Is the first argument of @f, which does \p Body, one without sign?
bool isUnsignedIn(const std::string &Body,
                  const std::string &Parameter = "i8 %n",
                  const std::string &Metadata = "") {
  TestModule TM("define void @f(" + Parameter + ", i8 %k) " +
                (Metadata.empty() ? "" : "!dbg !3 ") + "{\nentry:\n" + Body +
                "\n  ret void\n}\n" + Metadata);
  return isUnsigned(*TM.function("f").getArg(0));
}

TEST(StateWordsTest, SignedWhereNothingTells) {
  EXPECT_FALSE(isUnsignedIn(""));
  EXPECT_FALSE(isUnsignedIn("  %c = icmp eq i8 %n, 9\n  %m = mul i8 %n, 3"));
}

TEST(StateWordsTest, WhatTheBodyDoes) {
  EXPECT_TRUE(isUnsignedIn("  %c = icmp ugt i8 %n, 9"));
  EXPECT_FALSE(isUnsignedIn("  %c = icmp sgt i8 %n, 9"));
  EXPECT_TRUE(isUnsignedIn("  %c = zext i8 %n to i32"));
  EXPECT_FALSE(isUnsignedIn("  %c = sext i8 %n to i32"));
  EXPECT_TRUE(isUnsignedIn("  %c = udiv i8 %n, 3"));
  EXPECT_TRUE(isUnsignedIn("  %c = lshr i8 %n, 3"));
  // How far something is shifted has no sign anyway.
  EXPECT_FALSE(isUnsignedIn("  %c = lshr i8 %k, %n"));
  // On the way to a self call, or in a loop.
  EXPECT_TRUE(isUnsignedIn("  %m = add i8 %n, 1\n  %c = icmp ult i8 %m, 9"));
  EXPECT_TRUE(isUnsignedIn(R"(  br label %loop
loop:
  %i = phi i8 [ %n, %entry ], [ %next, %loop ]
  %next = add i8 %i, 1
  %c = icmp ult i8 %next, 99
  br i1 %c, label %loop, label %end
end:)"));
  // Both.
  EXPECT_FALSE(
      isUnsignedIn("  %c = icmp ugt i8 %n, 9\n  %d = icmp sgt i8 %n, 9"));
}

TEST(StateWordsTest, HowItIsPassedCountsMore) {
  const std::string Signed = "  %c = icmp sgt i8 %n, 9";
  const std::string Unsigned = "  %c = icmp ugt i8 %n, 9";
  EXPECT_TRUE(isUnsignedIn(Signed, "i8 zeroext %n"));
  EXPECT_FALSE(isUnsignedIn(Unsigned, "i8 signext %n"));
}

/// Debug information of @f with \p Types for result and arguments; !7 is a
/// number without sign, !8 one with, !9 another name of !7.
std::string withTypes(const std::string &Types) {
  return R"(
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C11, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "f.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = distinct !DISubprogram(name: "f", file: !1, line: 1, type: !4, unit: !0, spFlags: DISPFlagDefinition)
!4 = !DISubroutineType(types: !5)
!5 = !{)" +
         Types + R"(}
!7 = !DIBasicType(name: "unsigned char", size: 8, encoding: DW_ATE_unsigned_char)
!8 = !DIBasicType(name: "signed char", size: 8, encoding: DW_ATE_signed_char)
!9 = !DIDerivedType(tag: DW_TAG_typedef, name: "byte", baseType: !7)
!10 = !DICompositeType(tag: DW_TAG_enumeration_type, baseType: !7, size: 8, elements: !11)
!11 = !{}
!12 = !DICompositeType(tag: DW_TAG_structure_type, size: 8, elements: !11)
)";
}

TEST(StateWordsTest, DebugInformationCountsMost) {
  const std::string Signed = "i8 signext %n", Unsigned = "i8 zeroext %n";
  EXPECT_TRUE(isUnsignedIn("", Signed, withTypes("null, !7, !8")));
  EXPECT_TRUE(isUnsignedIn("", Signed, withTypes("null, !9, !8")));
  EXPECT_TRUE(isUnsignedIn("", Signed, withTypes("null, !10, !8")));
  EXPECT_FALSE(isUnsignedIn("", Unsigned, withTypes("null, !8, !7")));
  // A piece of memory, and arguments that are not those of the source.
  EXPECT_TRUE(isUnsignedIn("", Unsigned, withTypes("null, !12, !8")));
  EXPECT_TRUE(isUnsignedIn("", Unsigned, withTypes("null, !8")));
}

/// What is said of the argument of @f, of type \p Ty, where the states know
/// \p Values.
std::string say(const std::string &Parameter,
                std::initializer_list<int> Values) {
  TestModule TM("define void @f(" + Parameter + ") {\n  ret void\n}\n");
  const Argument &A = *TM.function("f").getArg(0);
  StateSet States;
  for (int Value : Values)
    States.States.emplace_back().Arguments = {
        ConstantInt::get(A.getType(), Value, /*isSigned=*/true)};
  return describeValues(A, States);
}

TEST(StateWordsTest, Values) {
  EXPECT_EQ(say("i8 signext %n", {-6, 3, 9}), "'n' (-6 to 9)");
  EXPECT_EQ(say("i8 zeroext %n", {-6, 3, 9}), "'n' (3 to 250)");
  EXPECT_EQ(say("i8 zeroext %n", {-6, 3}), "'n' (250, 3)");
  EXPECT_EQ(say("i8 signext %0", {-6, 3}), "argument 1 (-6, 3)");
  EXPECT_EQ(say("i1 zeroext %n", {1, 0}), "'n' (true, false)");
}

/// The states of a function of its own in a module with \p Callers, with made
/// up links.
class Linked {
public:
  explicit Linked(const std::string &Linkage = "",
                  const std::string &Callers = "",
                  const std::string &Parameters = "i32 %n, ptr %p")
      : TM("define " + Linkage + " void @f(" + Parameters +
           ") {\n  ret void\n}\n" + Callers),
        F(TM.function("f")) {}

  /// Adds a state that knows \p N and leads to those with the numbers \p Next.
  Linked &add(Constant *N, std::initializer_list<unsigned> Next) {
    State &S = States.States.emplace_back();
    S.Arguments.resize(F.arg_size());
    S.Arguments.front() = N;
    for (unsigned To : Next)
      S.Next.push_back({nullptr, To, std::nullopt});
    return *this;
  }
  Linked &add(int N, std::initializer_list<unsigned> Next) {
    return add(ConstantInt::get(F.getArg(0)->getType(), N, true), Next);
  }
  Linked &enter(unsigned Number) {
    States.Entries.emplace_back(nullptr, Number);
    return *this;
  }

  std::string states() const { return listStates(F, States); }
  std::string links() const { return listLinks(F, States); }

private:
  TestModule TM;

public:
  Function &F;
  StateSet States;
};

TEST(StateWordsTest, LinksOfACycle) {
  Linked Cycle;
  Cycle.add(-1, {1}).add(4, {2}).add(0, {0, 2, 0}).enter(0).enter(2).enter(0);
  EXPECT_EQ(Cycle.states(), "-1,_ 4,_ 0,_");
  EXPECT_EQ(Cycle.links(), "in:0 in:2 others 0-1:+1 2:-2,+0");
}

TEST(StateWordsTest, StatesThatLeadNowhere) {
  Linked Choice;
  Choice.add(0, {1, 2}).add(1, {}).add(2, {}).enter(0);
  EXPECT_EQ(Choice.links(), "in:0 others 0:+1,+2");
}

TEST(StateWordsTest, OthersAreThoseWhoAreLeft) {
  const std::string Caller = "define void @main(ptr %p) {\n"
                             "  call void @f(i32 7, ptr %p)\n  ret void\n}\n";
  EXPECT_EQ(Linked("internal", Caller).add(7, {}).enter(0).links(), "in:0");
  EXPECT_EQ(Linked("", Caller).add(7, {}).enter(0).links(), "in:0 others");
  EXPECT_EQ(Linked("internal", Caller + "@a = global ptr @f\n")
                .add(7, {})
                .enter(0)
                .links(),
            "in:0 others");
}

TEST(StateWordsTest, ManyStatesAreShortened) {
  Linked Eight, Nine;
  for (unsigned I = 0; I != 8; ++I)
    Eight.add(I, {I + 1});
  EXPECT_EQ(Eight.states(), "0,_ 1,_ 2,_ 3,_ 4,_ 5,_ 6,_ 7,_");
  for (unsigned I = 0; I != 9; ++I)
    Nine.add(I, {I + 1});
  EXPECT_EQ(Nine.states(), "0,_ 1,_ ... 8,_");
  EXPECT_EQ(Nine.links(), "others 0-8:+1");
}

TEST(StateWordsTest, LongLinksEnd) {
  Linked Uneven;
  for (unsigned I = 0; I != 100; ++I)
    Uneven.add(I, {I * 37 % 100});
  EXPECT_LE(Uneven.links().size(), 404u);
  EXPECT_TRUE(StringRef(Uneven.links()).endswith(" ..."));
}

TEST(StateWordsTest, NamesThatAreNoShortWords) {
  Linked Names("",
               "declare void @\"a b\"()\n"
               "declare void @a_function_with_a_long_name()\n"
               "declare void @short()\n",
               "ptr %compare");
  for (const char *Name : {"short", "a b", "a_function_with_a_long_name"})
    Names.add(Names.F.getParent()->getFunction(Name), {});
  EXPECT_EQ(Names.states(), "@short #1 #2");
}

} // namespace
