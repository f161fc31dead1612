//===- DebugSummaryTest.cpp - The text of the summary ---------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;

namespace {

class DebugSummaryTest : public PassTest {};

TEST_F(DebugSummaryTest, OneLinePerCountAndPerCaller) {
  TestModule TM(countdown("f") + caller("first", "f") + caller("second", "f"));
  Costing Record = TM.analyzedRecord("f");
  EXPECT_EQ(debugOutputOf([&] { Record.printFunctionParameters(); }),
            "InlineRecursion: Function f Summary:\n"
            "   IsRecursiveFunction: 1\n"
            "   NumOfBlocks: 3\n"
            "   NumOfInsts: 6\n"
            "   NumOfBranches: 1\n"
            "   NumOfFunctionCalls: 1\n"
            "   NumOfRecursiveCalls: 1\n"
            "   NumOfCandidateFunCallSiteInMod: 3\n"
            "   NumOfCandidateFunCallSite in second: 1\n"
            "   NumOfCandidateFunCallSite in first: 1\n"
            "   NumOfCandidateFunCallSite in f: 1\n");
}

TEST_F(DebugSummaryTest, AnEmptyTallyPrintsEightLines) {
  TestModule TM(leaf("f"));
  Costing Record = TM.record("f");
  EXPECT_EQ(debugOutputOf([&] { Record.printFunctionParameters(); }),
            "InlineRecursion: Function f Summary:\n"
            "   IsRecursiveFunction: 0\n"
            "   NumOfBlocks: 0\n"
            "   NumOfInsts: 0\n"
            "   NumOfBranches: 0\n"
            "   NumOfFunctionCalls: 0\n"
            "   NumOfRecursiveCalls: 0\n"
            "   NumOfCandidateFunCallSiteInMod: 0\n");
}

TEST_F(DebugSummaryTest, AFunctionWithoutANameLeavesTwoBlanks) {
  TestModule TM(leaf("f"));
  Costing Record = TM.record("f");
  TM.function("f").setName("");
  const std::string Text =
      debugOutputOf([&] { Record.printFunctionParameters(); });
  EXPECT_EQ(Text.substr(0, Text.find('\n')),
            "InlineRecursion: Function  Summary:");
}

TEST_F(DebugSummaryTest, NamesAreNotQuoted) {
  TestModule TM(leaf("f"));
  Costing Record = TM.record("f");
  TM.function("f").setName("a b");
  const std::string Text =
      debugOutputOf([&] { Record.printFunctionParameters(); });
  EXPECT_EQ(Text.substr(0, Text.find('\n')),
            "InlineRecursion: Function a b Summary:");
}

TEST_F(DebugSummaryTest, CountsAreUnsignedAndEachFieldHasItsLine) {
  TestModule TM(leaf("f") + leaf("g"));
  Costing Record = TM.record("f");
  Record.IsRecursiveFunction = true;
  Record.NumOfBlocks = 4294967295u;
  Record.NumOfInsts = 4294967294u;
  Record.NumOfBranches = 4294967293u;
  Record.NumOfFunctionCalls = 4294967292u;
  Record.NumOfRecursiveCalls = 4294967291u;
  Record.NumOfCandidateFunCallSiteInMod = 4294967290u;
  Record.NumOfCandidateFunCallSite[&TM.function("g")] = 4294967295u;
  EXPECT_EQ(debugOutputOf([&] { Record.printFunctionParameters(); }),
            "InlineRecursion: Function f Summary:\n"
            "   IsRecursiveFunction: 1\n"
            "   NumOfBlocks: 4294967295\n"
            "   NumOfInsts: 4294967294\n"
            "   NumOfBranches: 4294967293\n"
            "   NumOfFunctionCalls: 4294967292\n"
            "   NumOfRecursiveCalls: 4294967291\n"
            "   NumOfCandidateFunCallSiteInMod: 4294967290\n"
            "   NumOfCandidateFunCallSite in g: 4294967295\n");
}

TEST_F(DebugSummaryTest, PrintingChangesNothing) {
  TestModule TM(countdown("f"));
  Costing Record = TM.analyzedRecord("f", 3);
  const std::string Before = TM.text();
  const std::string First =
      debugOutputOf([&] { Record.printFunctionParameters(); });
  EXPECT_EQ(debugOutputOf([&] { Record.printFunctionParameters(); }), First);
  EXPECT_EQ(TM.text(), Before);
  EXPECT_EQ(Record.OptLevel, 3u);
}

} // namespace
