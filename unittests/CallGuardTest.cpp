//===- CallGuardTest.cpp - The test in front of calls ---------------------===//

#include "plugin/rewrite/CallGuard.h"
#include "TestModule.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// Declarations that the functions below use.
const char *const Prelude = R"(
declare void @other()
declare i32 @pure(i32) memory(none) nounwind willreturn
declare i1 @llvm.is.constant.i32(i32)
declare i64 @llvm.objectsize.i64.p0(ptr, i1, i1, i1)
declare ptr @llvm.frameaddress.p0(i32)
declare i32 @llvm.abs.i32(i32, i1)
declare i32 @llvm.smax.i32(i32, i32)
)";

/// Two tests in a row, the second on memory; the first begins with \p Test.
std::string twoTests(const std::string &Test = "") {
  return Prelude + std::string(R"(
define i32 @f(i32 %n, ptr %p) {
entry:
)") + Test +
         R"(
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %look
look:
  %x = load i32, ptr %p
  %seen = icmp eq i32 %x, %n
  br i1 %seen, label %found, label %rec
found:
  %y = mul i32 %x, 5
  br label %exit
rec:
  %m = sub i32 %n, 1
  %a = call i32 @f(i32 %m, ptr %p)
  %b = call i32 @f(i32 %a, ptr %p)
  br label %exit
exit:
  %v = phi i32 [ 1, %entry ], [ %y, %found ], [ %b, %rec ]
  ret i32 %v
}
)";
}

std::vector<std::string> namesOf(ArrayRef<BasicBlock *> Blocks) {
  std::vector<std::string> Names;
  for (const BasicBlock *BB : Blocks)
    Names.push_back(BB->getName().str());
  return Names;
}

using testing::ElementsAre;

/// Is anything in \p Text, the beginning of @f's entry block, in the way of a
/// guard?
bool stopsGuard(const std::string &Text) {
  TestModule TM(twoTests(Text));
  return !findEntryGuard(TM.function("f"), 30);
}

TEST(FindEntryGuardTest, OneTest) {
  TestModule TM(countdown("f"));
  auto Guard = findEntryGuard(TM.function("f"), 30);
  ASSERT_TRUE(Guard);
  EXPECT_THAT(namesOf(Guard->Blocks), ElementsAre("entry"));
  EXPECT_EQ(Guard->Beyond.front()->getName(), "recurse");
  // icmp, br; ret.
  EXPECT_EQ(Guard->Size, 3u);
}

TEST(FindEntryGuardTest, AllTestsInARowThatFit) {
  TestModule TM(twoTests());
  Function &F = TM.function("f");
  auto Both = findEntryGuard(F, 9);
  ASSERT_TRUE(Both);
  EXPECT_THAT(namesOf(Both->Blocks), ElementsAre("entry", "look"));
  EXPECT_EQ(Both->Beyond.front()->getName(), "rec");
  // entry: 2, look: 3, found: 2, exit: 2.
  EXPECT_EQ(Both->Size, 9u);

  auto First = findEntryGuard(F, 8);
  ASSERT_TRUE(First);
  EXPECT_THAT(namesOf(First->Blocks), ElementsAre("entry"));
  EXPECT_EQ(First->Beyond.front()->getName(), "look");
  // entry: 2, exit: 2.
  EXPECT_EQ(First->Size, 4u);
  EXPECT_TRUE(findEntryGuard(F, 4));
  EXPECT_FALSE(findEntryGuard(F, 3));
}

TEST(FindEntryGuardTest, BlocksBehindTheLastTestDoNotCount) {
  TestModule TM(R"(
define i32 @f(i32 %n) {
entry:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %on
on:
  %a = add i32 %n, 1
  %b = add i32 %a, 1
  br label %rec
rec:
  %r = call i32 @f(i32 %b)
  ret i32 %r
exit:
  ret i32 0
}
)");
  auto Guard = findEntryGuard(TM.function("f"), 30);
  ASSERT_TRUE(Guard);
  EXPECT_THAT(namesOf(Guard->Blocks), ElementsAre("entry"));
  EXPECT_EQ(Guard->Size, 3u);
}

/// An evaluator: what it works on ends, is one call, or two.
const char *const Evaluator = R"(
@g = global i32 0
define i32 @f(ptr %p) {
entry:
  br label %look
look:
  %kind = load i32, ptr %p
  switch i32 %kind, label %two [ i32 0, label %leaf
                                 i32 1, label %one
                                 i32 2, label %one ]
leaf:
  ret i32 7
one:
  %how = phi i32 [ %kind, %look ], [ %kind, %look ]
  %a = call i32 @f(ptr @g)
  %sum = add i32 %a, %how
  ret i32 %sum
two:
  %l = call i32 @f(ptr null)
  %r = call i32 @f(ptr %p)
  %difference = sub i32 %l, %r
  ret i32 %difference
}
)";

TEST(FindEntryGuardTest, AChoiceOfWaysToRecurse) {
  TestModule TM(Evaluator);
  Function &F = TM.function("f");
  auto Guard = findEntryGuard(F, 30);
  ASSERT_TRUE(Guard);
  EXPECT_THAT(namesOf(Guard->Blocks), ElementsAre("entry", "look"));
  EXPECT_THAT(namesOf(Guard->Beyond), ElementsAre("two", "one"));
  // entry: 1, look: 2, leaf: 1.
  EXPECT_EQ(Guard->Size, 4u);
  EXPECT_FALSE(findEntryGuard(F, 3));

  ValueToValueMapTy VMap;
  Function &Copy = *CloneFunction(&F, VMap);
  Function &New = buildGuard(F, *Guard, Copy);
  const unsigned Before = Copy.getInstructionCount();
  removeGuard(Copy, F, *Guard);
  EXPECT_TRUE(TM.isValid());
  EXPECT_EQ(Copy.getInstructionCount(), Before);
  // Every way beyond is the same to the guard.
  EXPECT_EQ(New.size(), 4u);
  EXPECT_THAT(TM.calleesOf(New.getName()), ElementsAre(Copy.getName().str()));
}

TEST(FindEntryGuardTest, Switch) {
  TestModule TM(R"(
define i32 @f(i32 %n) {
entry:
  switch i32 %n, label %rec [ i32 0, label %zero  i32 1, label %one
                              i32 7, label %rec ]
zero:
  ret i32 0
one:
  ret i32 1
rec:
  %m = phi i32 [ 3, %entry ], [ 3, %entry ]
  %r = call i32 @f(i32 %m)
  ret i32 %r
}
)");
  Function &F = TM.function("f");
  auto Guard = findEntryGuard(F, 30);
  ASSERT_TRUE(Guard);
  EXPECT_EQ(Guard->Beyond.front()->getName(), "rec");
  EXPECT_EQ(Guard->Size, 3u);
  ValueToValueMapTy VMap;
  Function &Copy = *CloneFunction(&F, VMap);
  Function &New = buildGuard(F, *Guard, Copy);
  removeGuard(Copy, F, *Guard);
  EXPECT_TRUE(TM.isValid());
  EXPECT_EQ(New.size(), 4u);
  EXPECT_EQ(Copy.size(), 2u);
}

TEST(FindEntryGuardTest, NoneWhereBothSidesRecurse) {
  TestModule TM(R"(
define i32 @f(i32 %n) {
entry:
  %odd = trunc i32 %n to i1
  br i1 %odd, label %a, label %b
a:
  %x = call i32 @f(i32 1)
  ret i32 %x
b:
  %none = icmp eq i32 %n, 0
  br i1 %none, label %c, label %d
c:
  ret i32 0
d:
  %y = call i32 @f(i32 2)
  ret i32 %y
}
)");
  EXPECT_FALSE(findEntryGuard(TM.function("f"), 30));
}

TEST(FindEntryGuardTest, WhatComputesMayBeRepeated) {
  EXPECT_FALSE(stopsGuard(""));
  EXPECT_FALSE(stopsGuard("  %u = load i32, ptr %p\n"));
  EXPECT_FALSE(stopsGuard("  %u = udiv i32 %n, 3\n"));
  EXPECT_FALSE(stopsGuard("  %u = alloca i32\n"));
  EXPECT_FALSE(stopsGuard("  %u = call i32 @llvm.abs.i32(i32 %n, i1 0)\n"));
}

TEST(FindEntryGuardTest, WhatWritesOrCallsMayNot) {
  EXPECT_TRUE(stopsGuard("  store i32 1, ptr %p\n"));
  EXPECT_TRUE(stopsGuard("  %u = load volatile i32, ptr %p\n"));
  EXPECT_TRUE(
      stopsGuard("  %u = load atomic i32, ptr %p monotonic, align 4\n"));
  EXPECT_TRUE(stopsGuard("  call void @other()\n"));
  EXPECT_TRUE(stopsGuard("  %u = call i32 @pure(i32 %n)\n"));
  EXPECT_TRUE(stopsGuard("  %u = alloca i32, i32 %n\n"));
  EXPECT_TRUE(stopsGuard("  fence seq_cst\n"));
}

TEST(FindEntryGuardTest, WhatMayDifferTheSecondTimeMayNot) {
  EXPECT_TRUE(stopsGuard("  %u = freeze i32 %n\n"));
  // Another thread stores in between.
  EXPECT_TRUE(
      stopsGuard("  %u = load atomic i32, ptr %p unordered, align 4\n"));
  // The caller knows more about the argument.
  EXPECT_TRUE(stopsGuard("  %u = call i1 @llvm.is.constant.i32(i32 %n)\n"));
  EXPECT_TRUE(stopsGuard("  %u = call i64 @llvm.objectsize.i64.p0(ptr %p, i1 "
                         "0, i1 1, i1 0)\n"));
  // Another frame.
  EXPECT_TRUE(stopsGuard("  %u = call ptr @llvm.frameaddress.p0(i32 0)\n"));
  EXPECT_TRUE(stopsGuard("  %s = alloca i32\n"
                         "  %u = ptrtoint ptr %s to i64\n"));
}

TEST(BuildGuardTest, TestsAndCallsTheTarget) {
  TestModule TM(twoTests() + "declare i32 @target(i32, ptr)\n");
  Function &F = TM.function("f");
  F.setCallingConv(CallingConv::Fast);
  Function &Target = TM.function("target");
  Target.setCallingConv(CallingConv::Fast);
  auto Guard = findEntryGuard(F, 30);
  ASSERT_TRUE(Guard);
  Function &New = buildGuard(F, *Guard, Target);
  EXPECT_TRUE(TM.isValid());
  EXPECT_EQ(New.getName(), "f.recurse.guard");
  EXPECT_TRUE(New.hasInternalLinkage());
  EXPECT_EQ(New.getCallingConv(), CallingConv::Fast);
  // entry, look, found, exit, and the call.
  EXPECT_EQ(New.size(), 5u);
  EXPECT_THAT(TM.calleesOf("f.recurse.guard"), ElementsAre("target"));
  auto *Call = cast<CallInst>(*Target.user_begin());
  EXPECT_EQ(Call->getCallingConv(), CallingConv::Fast);
  EXPECT_EQ(Call->getArgOperand(0), New.getArg(0));
  EXPECT_EQ(Call->getArgOperand(1), New.getArg(1));
  EXPECT_EQ(cast<ReturnInst>(Call->getNextNode())->getReturnValue(), Call);
  auto *Phi = cast<PHINode>(TestModule::find(New, "v"));
  EXPECT_EQ(Phi->getNumIncomingValues(), 2u);
}

TEST(BuildGuardTest, TestOfALoopIsTakenForItsFirstTrip) {
  TestModule TM(R"(
define void @f(i32 %n) {
entry:
  br label %head
head:
  %i = phi i32 [ 0, %entry ], [ %j, %body ]
  %more = icmp slt i32 %i, %n
  br i1 %more, label %body, label %exit
body:
  call void @f(i32 %i)
  %j = add i32 %i, 1
  br label %head
exit:
  ret void
}
)");
  Function &F = TM.function("f");
  auto Guard = findEntryGuard(F, 30);
  ASSERT_TRUE(Guard);
  EXPECT_THAT(namesOf(Guard->Blocks), ElementsAre("entry", "head"));
  ValueToValueMapTy VMap;
  Function &Copy = *CloneFunction(&F, VMap);
  Function &New = buildGuard(F, *Guard, Copy);
  EXPECT_EQ(New.size(), 4u);
  // The test ends the loop, too.
  removeGuard(Copy, F, *Guard);
  EXPECT_EQ(Copy.size(), F.size());
  EXPECT_TRUE(TM.isValid());
}

TEST(BuildGuardTest, CallHasALocationWhereTheFunctionHasDebugInfo) {
  TestModule TM(R"(
define void @f(i32 %n) !dbg !3 {
  %none = icmp eq i32 %n, 0
  br i1 %none, label %exit, label %rec
rec:
  call void @f(i32 %n), !dbg !5
  br label %exit
exit:
  ret void
}
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!2}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "f.c", directory: "/")
!2 = !{i32 2, !"Debug Info Version", i32 3}
!3 = distinct !DISubprogram(name: "f", file: !1, line: 4, type: !4, scopeLine: 6, unit: !0, spFlags: DISPFlagDefinition)
!4 = !DISubroutineType(types: !{})
!5 = !DILocation(line: 8, scope: !3)
)");
  Function &F = TM.function("f");
  auto Guard = findEntryGuard(F, 30);
  ASSERT_TRUE(Guard);
  ValueToValueMapTy VMap;
  Function &Target = *CloneFunction(&F, VMap);
  Function &New = buildGuard(F, *Guard, Target);
  EXPECT_TRUE(TM.isValid());
  for (Instruction &I : instructions(New)) {
    if (!isa<CallInst>(I))
      continue;
    ASSERT_TRUE(I.getDebugLoc());
    EXPECT_EQ(I.getDebugLoc().getLine(), 6u);
    EXPECT_EQ(I.getDebugLoc()->getScope(), New.getSubprogram());
  }
}

TEST(RemoveGuardTest, LeavesWhatIsBeyond) {
  for (unsigned MaxSize : {4, 30}) {
    TestModule TM(twoTests());
    Function &F = TM.function("f");
    auto Guard = findEntryGuard(F, MaxSize);
    ASSERT_TRUE(Guard);
    ValueToValueMapTy VMap;
    Function &Copy = *CloneFunction(&F, VMap);
    removeGuard(Copy, F, *Guard);
    EXPECT_TRUE(TM.isValid());
    const bool Both = Guard->Blocks.size() == 2;
    // Without `found`, if both tests are taken out.
    EXPECT_EQ(Copy.size(), Both ? 4u : 5u);
    auto *Jump = cast<BranchInst>(Copy.getEntryBlock().getTerminator());
    EXPECT_TRUE(Jump->isUnconditional());
    EXPECT_EQ(Jump->getSuccessor(0)->getName().substr(0, 4), "look");
    // What has one value left is no choice any more.
    auto *Phi = cast_or_null<PHINode>(TestModule::find(Copy, "v"));
    EXPECT_EQ(Phi ? Phi->getNumIncomingValues() : 1u, Both ? 1u : 2u);
  }
}

} // namespace
