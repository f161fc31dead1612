//===- ValueArgumentsTest.cpp - What is read through a pointer ------------===//
//
// What may become a value at all is in tests/plugin/by-reference-*.ll.
//
//===----------------------------------------------------------------------===//

#include "plugin/literal/ValueArguments.h"
#include "TestModule.h"
#include "llvm/IR/Constants.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

const char *const Text = R"(
target datalayout = "e-i64:64"
%pair = type { i16, i64 }
define LINKAGE i64 @f(ptr %p, ptr %q, i32 %k) {
  %next = alloca %pair, align 8
  %second = getelementptr %pair, ptr %p, i32 0, i32 1
  %b = load i64, ptr %second, align 8
  %a = load i16, ptr %p, align 2
  %again = load i16, ptr %p, align 8
  %c = load i32, ptr %q, align 4
  %stop = icmp eq i16 %a, 0
  br i1 %stop, label %end, label %rec
rec:
  store %pair { i16 4, i64 5 }, ptr %next
  %r = call i64 @f(ptr %next, ptr %q, i32 %c)
  ret i64 %r
end:
  ret i64 %b
}
define i64 @main(ptr %given) {
  %first = alloca %pair, align 8
  %fixed = alloca i32
  %r = call i64 @f(ptr %first, ptr %fixed, i32 2)
  %s = call i64 @f(ptr %given, ptr %fixed, i32 2)
  ret i64 %r
}
)";

std::string withLinkage(StringRef Linkage) {
  std::string Copy = Text;
  return Copy.replace(Copy.find("LINKAGE"), 7, Linkage.str());
}

TEST(ValueArgumentsTest, PartsInOrderAsAlignedAsAnyRead) {
  TestModule TM(withLinkage(""));
  const auto How = findValuePassing(TM.function("f"));
  ASSERT_TRUE(How);
  ASSERT_EQ(How->Arguments.size(), 2u);
  const ReadArgument &P = How->Arguments[0];
  EXPECT_EQ(P.Index, 0u);
  ASSERT_EQ(P.Parts.size(), 2u);
  EXPECT_EQ(P.Parts[0].Offset, 0u);
  EXPECT_TRUE(P.Parts[0].Ty->isIntegerTy(16));
  EXPECT_EQ(P.Parts[0].Alignment, Align(8));
  EXPECT_EQ(P.Parts[1].Offset, 8u);
  EXPECT_EQ(How->Arguments[1].Index, 1u);
}

TEST(ValueArgumentsTest, CallsThatPassValues) {
  TestModule TM(withLinkage(""));
  const auto How = findValuePassing(TM.function("f"));
  ASSERT_TRUE(How);
  // Not the one with a pointer that is given, nor the one of the function
  // itself, which hands %q through.
  ASSERT_EQ(How->Calls.size(), 1u);
  EXPECT_EQ(How->Calls.front()->getName(), "r");
  EXPECT_EQ(How->Calls.front()->getFunction(), &TM.function("main"));
}

TEST(ValueArgumentsTest, TheFunctionStaysForOthers) {
  TestModule TM(withLinkage(""));
  Function &F = TM.function("f");
  const PassedValues Passed = passValues(F, *findValuePassing(F));
  EXPECT_TRUE(TM.isValid());
  EXPECT_EQ(Passed.Local->getName(), "f.recurse.value");
  EXPECT_TRUE(Passed.Local->hasLocalLinkage());
  ASSERT_EQ(Passed.Local->arg_size(), 4u);
  EXPECT_TRUE(Passed.Local->getArg(0)->getType()->isIntegerTy(16));
  EXPECT_TRUE(Passed.Local->getArg(1)->getType()->isIntegerTy(64));
  EXPECT_EQ(TM.calleesOf("f"), std::vector<std::string>({"f"}));
  EXPECT_EQ(TM.calleesOf("f.recurse.value"),
            std::vector<std::string>({"f.recurse.value"}));
  EXPECT_EQ(TM.calleesOf("main"),
            std::vector<std::string>({"f.recurse.value", "f"}));
  EXPECT_TRUE(Passed.Callers.contains(&TM.function("main")));
}

TEST(ValueArgumentsTest, ALocalFunctionThatNobodyNeedsIsReplaced) {
  std::string Assembly = withLinkage("internal");
  Assembly.replace(Assembly.find("ptr %given, ptr %fixed"), 22,
                   "ptr %first, ptr %fixed");
  TestModule TM(Assembly);
  Function &F = TM.function("f");
  const auto How = findValuePassing(F);
  ASSERT_TRUE(How);
  // The one in the function itself as well: nobody enters it with a pointer.
  EXPECT_EQ(How->Calls.size(), 3u);
  passValues(F, *How);
  EXPECT_TRUE(TM.isValid());
  EXPECT_EQ(TM.functionNames(), std::vector<std::string>({"f", "main"}));
  EXPECT_EQ(TM.function("f").arg_size(), 4u);
}

TEST(ValueArgumentsTest, NothingWithoutACallThatPassesValues) {
  std::string Assembly = withLinkage("");
  Assembly.replace(Assembly.find("ptr %next, ptr %q"), 17, "ptr %q, ptr %p");
  TestModule TM(Assembly);
  EXPECT_FALSE(findValuePassing(TM.function("f")));
}

} // namespace
