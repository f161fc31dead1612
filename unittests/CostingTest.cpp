//===- CostingTest.cpp - Counting a function ------------------------------===//
///
/// \file
/// The counts of a costing record, and the question whether a function is
/// called from one place.
///
//===----------------------------------------------------------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

namespace {

/// The census by names, in the record's order.
std::vector<std::pair<std::string, unsigned>> census(const Costing &Record) {
  std::vector<std::pair<std::string, unsigned>> Census;
  for (const auto &[Caller, Count] : Record.NumOfCandidateFunCallSite)
    Census.push_back({Caller->getName().str(), Count});
  return Census;
}

class CostingTest : public PassTest {};

TEST_F(CostingTest, StartsFromNothing) {
  TestModule TM(countdown("f"));
  Function &F = TM.function("f");
  ScalarEvolution &SE = TM.scalarEvolution(F);
  DominatorTree &DT = TM.dominatorTree(F);
  Costing Record(&F, &SE, &DT, 7);
  EXPECT_EQ(Record.NumOfBlocks, 0u);
  EXPECT_EQ(Record.NumOfInsts, 0u);
  EXPECT_EQ(Record.NumOfBranches, 0u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 0u);
  EXPECT_EQ(Record.NumOfRecursiveCalls, 0u);
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 0u);
  EXPECT_THAT(census(Record), IsEmpty());
  EXPECT_FALSE(Record.IsRecursiveFunction);
  EXPECT_EQ(Record.F, &F);
  EXPECT_EQ(Record.SE, &SE);
  EXPECT_EQ(Record.DT, &DT);
  EXPECT_EQ(Record.OptLevel, 7u);
}

TEST_F(CostingTest, CountsACountdown) {
  TestModule TM(countdown("f") + caller("main", "f"));
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfBlocks, 3u);
  EXPECT_EQ(Record.NumOfInsts, 6u);
  EXPECT_EQ(Record.NumOfBranches, 1u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 1u);
  EXPECT_EQ(Record.NumOfRecursiveCalls, 1u);
  EXPECT_TRUE(Record.IsRecursiveFunction);
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 2u);
}

TEST_F(CostingTest, OnlyBranchInstructionsAreBranches) {
  TestModule TM(R"(
define void @f(i32 %n, ptr %where) {
entry:
  br label %head
head:
  %c = phi i32 [ 0, %entry ], [ %next, %head ]
  %next = add i32 %c, 1
  %more = icmp ult i32 %next, %n
  br i1 %more, label %head, label %choose
choose:
  switch i32 %n, label %jump [ i32 1, label %out
                               i32 2, label %stop ]
jump:
  indirectbr ptr %where, [ label %out, label %stop ]
out:
  ret void
stop:
  unreachable
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfBlocks, 6u);
  EXPECT_EQ(Record.NumOfInsts, 9u);
  EXPECT_EQ(Record.NumOfBranches, 2u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 0u);
  EXPECT_FALSE(Record.IsRecursiveFunction);
}

TEST_F(CostingTest, EveryCallInstructionIsACall) {
  TestModule TM(R"(
declare i32 @pers(...)
declare void @ext(i32)
declare void @llvm.donothing()
define void @f(i32 %n, ptr %p) personality ptr @pers {
entry:
  call void @ext(i32 %n)
  call void %p()
  call void @llvm.donothing()
  call void asm sideeffect "", ""()
  invoke void @ext(i32 %n) to label %fine unwind label %pad
fine:
  callbr void asm sideeffect "", "!i"() to label %out [label %out]
out:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfFunctionCalls, 4u);
  EXPECT_EQ(Record.NumOfInsts, 9u);
  EXPECT_EQ(Record.NumOfBranches, 0u);
}

TEST_F(CostingTest, DebugIntrinsicsCountAsInstructionsAndCalls) {
  TestModule TM(R"(
declare void @llvm.dbg.value(metadata, metadata, metadata)
define void @f(i32 %n) !dbg !4 {
  call void @llvm.dbg.value(metadata i32 %n, metadata !5, metadata !DIExpression()), !dbg !6
  ret void, !dbg !6
}
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!7}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "f.c", directory: "/")
!2 = !DISubroutineType(types: !{})
!4 = distinct !DISubprogram(name: "f", file: !1, line: 1, type: !2, unit: !0, spFlags: DISPFlagDefinition)
!5 = !DILocalVariable(name: "n", arg: 1, scope: !4, file: !1, line: 1)
!6 = !DILocation(line: 1, scope: !4)
!7 = !{i32 2, !"Debug Info Version", i32 3}
)");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfInsts, 2u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 1u);
}

TEST_F(CostingTest, AnInvokeOfItselfIsNoRecursiveCall) {
  TestModule TM(R"(
declare i32 @pers(...)
define i32 @f(i32 %n) personality ptr @pers {
entry:
  %a = invoke i32 @f(i32 %n) to label %fine unwind label %pad
fine:
  %b = call i32 @f(i32 %a)
  ret i32 %b
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfRecursiveCalls, 1u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 1u);
  EXPECT_TRUE(Record.IsRecursiveFunction);
  EXPECT_THAT(census(Record), ElementsAre(Pair("f", 1u)));
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 1u);
}

TEST_F(CostingTest, CountsSeveralSelfCalls) {
  TestModule TM(R"(
define i32 @f(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  ret i32 %b
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfRecursiveCalls, 2u);
  EXPECT_TRUE(Record.IsRecursiveFunction);
}

TEST_F(CostingTest, IndirectAndMistypedCallsAreNotDirectCalls) {
  TestModule TM(R"(
@alias = alias void (i32), ptr @f
define void @f(i32 %n) {
  %slot = alloca ptr
  store ptr @f, ptr %slot
  %p = load ptr, ptr %slot
  call void %p(i32 %n)
  call void @f()
  call void @alias(i32 %n)
  ret void
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(Record.NumOfFunctionCalls, 3u);
  EXPECT_EQ(Record.NumOfRecursiveCalls, 0u);
  EXPECT_FALSE(Record.IsRecursiveFunction);
  EXPECT_THAT(census(Record), IsEmpty());
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 0u);
}

TEST_F(CostingTest, AStoredAddressIsNotACallSite) {
  TestModule TM("@g = global ptr @f\n" + leaf("f"));
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_THAT(census(Record), IsEmpty());
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 0u);
}

TEST_F(CostingTest, ACallThatAlsoPassesTheFunctionCountsTwice) {
  TestModule TM(R"(
declare void @other(ptr)
define void @f(ptr %p) {
  ret void
}
define void @g() {
  call void @f(ptr @f)
  call void @other(ptr @f)
  ret void
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_THAT(census(Record), ElementsAre(Pair("g", 2u)));
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 2u);
  EXPECT_EQ(Record.NumOfRecursiveCalls, 0u);
}

TEST_F(CostingTest, ARecursiveCallThatPassesTheFunctionIsOneRecursiveCall) {
  TestModule TM(R"(
define void @f(ptr %p) {
  call void @f(ptr @f)
  ret void
})");
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_THAT(census(Record), ElementsAre(Pair("f", 2u)));
  EXPECT_EQ(Record.NumOfRecursiveCalls, 1u);
}

TEST_F(CostingTest, CallersStandInTheOrderOfTheUseList) {
  // A new use goes to the front of the list, so the list runs backwards
  // through the module: second, first, second, f.
  TestModule TM(countdown("f") + R"(
define i32 @second(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
define i32 @first(i32 %n) {
  %r = call i32 @f(i32 %n)
  ret i32 %r
}
)");
  Function &F = TM.function("f");
  Function &Second = TM.function("second");
  CallInst::Create(&F, {Second.getArg(0)}, "again",
                   Second.getEntryBlock().getTerminator());
  const Costing Record = TM.analyzedRecord("f");
  EXPECT_THAT(census(Record), ElementsAre(Pair("second", 2u), Pair("first", 1u),
                                          Pair("f", 1u)));
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 4u);
}

TEST_F(CostingTest, TheCensusDoesNotFollowTheOrderOfTheModule) {
  TestModule TM("define i32 @a(i32 %n) {\n  ret i32 0\n}\n"
                "define i32 @b(i32 %n) {\n  ret i32 0\n}\n" +
                countdown("f"));
  Function &F = TM.function("f");
  for (const char *Name : {"b", "a"}) {
    Function &Caller = TM.function(Name);
    CallInst::Create(&F, {Caller.getArg(0)}, "",
                     Caller.getEntryBlock().getTerminator());
  }
  EXPECT_THAT(census(TM.analyzedRecord("f")),
              ElementsAre(Pair("a", 1u), Pair("b", 1u), Pair("f", 1u)));

  TestModule Reversed("define i32 @a(i32 %n) {\n  ret i32 0\n}\n"
                      "define i32 @b(i32 %n) {\n  ret i32 0\n}\n" +
                      countdown("f"));
  for (const char *Name : {"a", "b"}) {
    Function &Caller = Reversed.function(Name);
    CallInst::Create(&Reversed.function("f"), {Caller.getArg(0)}, "",
                     Caller.getEntryBlock().getTerminator());
  }
  EXPECT_THAT(census(Reversed.analyzedRecord("f")),
              ElementsAre(Pair("b", 1u), Pair("a", 1u), Pair("f", 1u)));
}

TEST_F(CostingTest, ADeclarationHasACensusButNoBody) {
  TestModule TM("declare i32 @f(i32)\n" + caller("main", "f"));
  Function &F = TM.function("f");
  Costing Record(&F, nullptr, nullptr, 0);
  Record.analyzeFunction();
  EXPECT_THAT(census(Record), ElementsAre(Pair("main", 1u)));
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 1u);
  EXPECT_EQ(Record.NumOfBlocks, 0u);
  EXPECT_EQ(Record.NumOfInsts, 0u);
}

TEST_F(CostingTest, CountersWrapAround) {
  TestModule TM(countdown("f"));
  Costing Record = TM.record("f");
  Record.NumOfBlocks = Record.NumOfInsts = Record.NumOfBranches =
      Record.NumOfFunctionCalls = Record.NumOfRecursiveCalls =
          Record.NumOfCandidateFunCallSiteInMod =
              Record.NumOfCandidateFunCallSite[&TM.function("f")] = 4294967295u;
  Record.analyzeFunction();
  EXPECT_EQ(Record.NumOfBlocks, 2u);
  EXPECT_EQ(Record.NumOfInsts, 5u);
  EXPECT_EQ(Record.NumOfBranches, 0u);
  EXPECT_EQ(Record.NumOfFunctionCalls, 0u);
  EXPECT_EQ(Record.NumOfRecursiveCalls, 0u);
  EXPECT_THAT(census(Record), ElementsAre(Pair("f", 0u)));
  // The total is assigned, not added to.
  EXPECT_EQ(Record.NumOfCandidateFunCallSiteInMod, 1u);
}

/// Does a module's `f` count as called once?
bool isCalledOnce(const std::string &Assembly) {
  TestModule TM(Assembly);
  return TM.record("f").checkIfFunctionCalledOnce();
}

TEST_F(CostingTest, CalledOnceFromOutside) {
  EXPECT_TRUE(isCalledOnce(countdown("f") + caller("main", "f")));
  EXPECT_TRUE(isCalledOnce("define i32 @f(i32 %n) {\n  ret i32 0\n}\n" +
                           caller("main", "f")));
}

TEST_F(CostingTest, CalledOnceFromOutsideAndOftenFromItself) {
  EXPECT_TRUE(isCalledOnce(caller("main", "f") + R"(
define i32 @f(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  %c = call i32 @f(i32 %b)
  ret i32 %c
})"));
}

TEST_F(CostingTest, CalledFromTwoPlaces) {
  EXPECT_FALSE(
      isCalledOnce(countdown("f") + caller("a", "f") + caller("b", "f")));
  EXPECT_FALSE(isCalledOnce(countdown("f") + R"(
define i32 @a(i32 %n) {
  %x = call i32 @f(i32 %n)
  %y = call i32 @f(i32 %x)
  ret i32 %y
})"));
}

TEST_F(CostingTest, NotCalledAtAll) {
  EXPECT_FALSE(isCalledOnce(leaf("f")));
  EXPECT_FALSE(isCalledOnce(countdown("f")));
}

TEST_F(CostingTest, UsedOtherThanByDirectCalls) {
  const std::string Once = countdown("f") + caller("main", "f");
  EXPECT_FALSE(isCalledOnce("@g = global ptr @f\n" + Once));
  EXPECT_FALSE(isCalledOnce("@a = alias i32 (i32), ptr @f\n" + Once));
  EXPECT_FALSE(
      isCalledOnce("@g = global i64 ptrtoint (ptr @f to i64)\n" + Once));
  EXPECT_FALSE(isCalledOnce(Once + R"(
declare void @take(ptr)
define void @other() {
  call void @take(ptr @f)
  ret void
})"));
  EXPECT_FALSE(isCalledOnce(Once + R"(
define void @other() {
  call void @f()
  ret void
})"));
  EXPECT_FALSE(isCalledOnce(Once + R"(
declare i32 @pers(...)
define i32 @other() personality ptr @pers {
  %r = invoke i32 @f(i32 1) to label %fine unwind label %pad
fine:
  ret i32 %r
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
})"));
}

TEST_F(CostingTest, ACallThatPassesTheFunctionIsTwoOutsideCalls) {
  EXPECT_FALSE(isCalledOnce(R"(
define void @f(ptr %p) {
  ret void
}
define void @main() {
  call void @f(ptr @f)
  ret void
})"));
}

TEST_F(CostingTest, AnsweringLeavesTheRecordAndTheDepthAlone) {
  TestModule TM(countdown("f") + caller("main", "f"));
  Costing Record = TM.record("f", 3);
  setDepth(5);
  EXPECT_TRUE(Record.checkIfFunctionCalledOnce());
  EXPECT_EQ(depth(), 5u);
  EXPECT_EQ(Record.NumOfInsts, 0u);
  EXPECT_THAT(census(Record), IsEmpty());
  EXPECT_EQ(Record.OptLevel, 3u);
}

} // namespace
