//===- BodyHashTest.cpp - Is a function still what a plan was made for ----===//

#include "plugin/plan/BodyHash.h"
#include "TestModule.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

std::string hash(StringRef Assembly, StringRef Name = "f") {
  TestModule TM(Assembly);
  return hashBody(TM.function(Name));
}

constexpr StringLiteral Fib = R"(
define i32 @f(i32 %n) {
entry:
  %leaf = icmp slt i32 %n, 2
  br i1 %leaf, label %out, label %more
more:
  %n1 = sub nsw i32 %n, 1
  %a = call i32 @f(i32 %n1)
  %n2 = sub nsw i32 %n, 2
  %b = call i32 @f(i32 %n2)
  %sum = add i32 %a, %b
  br label %out
out:
  %r = phi i32 [ %n, %entry ], [ %sum, %more ]
  ret i32 %r
}
)";

std::string replace(std::string Text, StringRef From, StringRef To) {
  const size_t Place = Text.find(From.str());
  if (Place == std::string::npos)
    std::abort();
  return Text.replace(Place, From.size(), To.str());
}

TEST(BodyHashTest, SixteenDigits) {
  EXPECT_EQ(hash(Fib).size(), 16u);
  EXPECT_EQ(hash(Fib), hash(Fib));
}

TEST(BodyHashTest, WhatIsDoneCounts) {
  for (const auto &[From, To] :
       std::initializer_list<std::pair<StringRef, StringRef>>{
           {"%n, 2\n", "%n, 3\n"},
           {"slt", "ult"},
           {"sub nsw", "sub"},
           {"add i32", "mul i32"},
           {"%a, %b", "%b, %a"},
           {"i32 %n1)", "i32 %n)"},
           {"[ %n, %entry ]", "[ 0, %entry ]"},
           {"label %out, label %more", "label %more, label %out"}})
    EXPECT_NE(hash(replace(Fib.str(), From, To)), hash(Fib)) << From.str();
}

TEST(BodyHashTest, NamesOfValuesDoNotCount) {
  EXPECT_EQ(hash(replace(replace(Fib.str(), "%leaf =", "%0 ="), "%leaf", "%0")),
            hash(Fib));
}

TEST(BodyHashTest, AttributesDoNotCount) {
  EXPECT_EQ(hash(replace(Fib.str(), "%n) {", "%n) \"a\"=\"b\" nounwind {")),
            hash(Fib));
}

TEST(BodyHashTest, TheCalleeCounts) {
  const StringRef Calls = R"(
declare void @g()
declare void @h()
define void @f() {
  call void @g()
  ret void
})";
  EXPECT_NE(hash(Calls),
            hash(replace(Calls.str(), "call void @g", "call void @h")));
}

/// What link-time optimisation calls a local function is no other function.
TEST(BodyHashTest, PromotedNamesAreTheSame) {
  std::string Promoted = Fib.str();
  for (unsigned I = 0; I != 3; ++I)
    Promoted = replace(Promoted, "@f(", "@f.llvm.77(");
  EXPECT_EQ(hash(Promoted, "f.llvm.77"), hash(Fib));
}

/// Strings are numbered in each module; what they say is what counts.
TEST(BodyHashTest, StringsCountByWhatTheySay) {
  const StringRef Says = R"(
@.str = private constant [3 x i8] c"hi\00"
@.str.1 = private constant [3 x i8] c"ho\00"
declare void @say(ptr)
define void @f() {
  call void @say(ptr @.str)
  ret void
})";
  std::string Renamed = replace(Says.str(), "@.str =", "@.str.7 =");
  EXPECT_EQ(hash(replace(Renamed, "ptr @.str)", "ptr @.str.7)")), hash(Says));
  EXPECT_NE(hash(replace(Says.str(), "ptr @.str)", "ptr @.str.1)")),
            hash(Says));
}

TEST(BodyHashTest, ConstantsInConstantsCount) {
  const StringRef Address = R"(
@t = external global [4 x i32]
define ptr @f() {
  ret ptr getelementptr ([4 x i32], ptr @t, i64 0, i64 1)
})";
  EXPECT_NE(hash(Address), hash(replace(Address.str(), "i64 1)", "i64 2)")));
}

} // namespace
