//===- PipelineTest.cpp - Parameters, and pipelines side by side ----------===//

#include "plugin/pipeline/Parameters.h"
#include "plugin/pipeline/Registration.h"
#include "llvm/AsmParser/Parser.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/Passes/OptimizationLevel.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/SourceMgr.h"
#include "gtest/gtest.h"
#include <thread>
#include <vector>

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {

std::string errorOf(StringRef Text, AcceptedParameters Accepted) {
  Expected<PassParameters> Parameters = parsePassParameters(Text, Accepted);
  return Parameters ? "" : toString(Parameters.takeError());
}

constexpr AcceptedParameters All = {true, true};

TEST(PassParametersTest, NothingGivenMeansDefaults) {
  Expected<PassParameters> Parameters = parsePassParameters("", All);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_EQ(Parameters->Level, 0);
}

TEST(PassParametersTest, TheLastOneOfAKindHolds) {
  Expected<PassParameters> Parameters = parsePassParameters(
      "level=1;no-find-requests;level=4;find-requests", All);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_EQ(Parameters->Level, 4);
  EXPECT_TRUE(Parameters->FindRequests);
}

TEST(PassParametersTest, ErrorsNameTheParameter) {
  EXPECT_EQ(errorOf("level=5", All), "invalid level in parameter 'level=5'; a "
                                     "level is a number from 0 to 4");
  EXPECT_EQ(errorOf("level=", All), "invalid level in parameter 'level='; a "
                                    "level is a number from 0 to 4");
  EXPECT_EQ(errorOf("level=1;depth=2", {true, false}),
            "unknown parameter 'depth=2'; known: level=N");
  EXPECT_EQ(errorOf("level=1", {false, true}),
            "unknown parameter 'level=1'; known: find-requests "
            "no-find-requests");
  EXPECT_EQ(errorOf("x", {false, false}), "unknown parameter 'x'; known: none");
}

TEST(PassParametersTest, LimitsOfTheAutomaticPolicy) {
  constexpr AcceptedParameters Limits = {false, false, false, true};
  Expected<PassParameters> Parameters = parsePassParameters(
      "copies=3;module-growth=0;function-growth=80;copies=4", Limits);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_EQ(Parameters->Limits.Copies, 4u);
  EXPECT_EQ(Parameters->Limits.FunctionGrowth, 80u);
  EXPECT_EQ(Parameters->Limits.ModuleGrowth, 0u);

  Parameters = parsePassParameters("", Limits);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_EQ(Parameters->Limits.Copies, getDefaultBounds().Copies);
  EXPECT_EQ(Parameters->Limits.FunctionGrowth,
            getDefaultBounds().FunctionGrowth);
  EXPECT_EQ(Parameters->Limits.ModuleGrowth, getDefaultBounds().ModuleGrowth);
}

TEST(PassParametersTest, TheAutomaticPolicyIsOnUntilSwitchedOff) {
  constexpr AcceptedParameters Auto = {false, false, true};
  Expected<PassParameters> Parameters = parsePassParameters("", Auto);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_TRUE(Parameters->Auto);
  Parameters = parsePassParameters("no-auto", Auto);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_FALSE(Parameters->Auto);
  Parameters = parsePassParameters("no-auto;auto", Auto);
  ASSERT_TRUE(bool(Parameters));
  EXPECT_TRUE(Parameters->Auto);
}

TEST(PassParametersTest, ErrorsNameTheLimit) {
  constexpr AcceptedParameters Limits = {false, false, true, true};
  for (const char *Bad : {"copies=", "copies=x", "copies=-1", "copies=3x",
                          "copies=1001", "copies=99999999999"})
    EXPECT_EQ(errorOf(Bad, Limits), "invalid number in parameter '" +
                                        std::string(Bad) +
                                        "'; copies is a number from 0 to 1000");
  EXPECT_EQ(errorOf("function-growth=many", Limits),
            "invalid number in parameter 'function-growth=many'; "
            "function-growth is a number from 0 on");
  EXPECT_EQ(errorOf("module-growth=", Limits),
            "invalid number in parameter 'module-growth='; module-growth is a "
            "number from 0 on");
  EXPECT_EQ(errorOf("copies", Limits),
            "unknown parameter 'copies'; known: auto no-auto copies=N "
            "function-growth=N module-growth=N state-growth=N");
  EXPECT_EQ(errorOf("no-auto", All),
            "unknown parameter 'no-auto'; known: level=N find-requests "
            "no-find-requests");
}

// Recursions of different depths, so that a depth that leaks from one thread
// into another makes a chain of the wrong length.
std::string makeProgram(unsigned Depth) {
  return R"(
define internal i32 @down(i32 %n) {
entry:
  %c = icmp eq i32 %n, 0
  br i1 %c, label %base, label %rec
base:
  ret i32 1
rec:
  %m = sub i32 %n, 1
  %r = call i32 @down(i32 %m)
  %p = mul i32 %r, %n
  ret i32 %p
}
define i32 @enter() {
  %r = call i32 @down(i32 )" +
         std::to_string(Depth) + R"()
  ret i32 %r
}
define internal i32 @around(i32 %n, i32 %u) "specialize-inline-recursion-function" {
entry:
  %k = srem i32 %n, )" +
         std::to_string(2 + Depth % 4) + R"(
  %c = icmp sle i32 %n, 0
  br i1 %c, label %base, label %rec
base:
  ret i32 %u
rec:
  %m = sub i32 %n, 1
  %v = add i32 %u, %k
  %r = call i32 @around(i32 %m, i32 %v)
  %p = sub i32 %n, %r
  ret i32 %p
}
define i32 @go(i32 %u) {
  %r = call i32 @around(i32 )" +
         std::to_string(5 * Depth) + R"(, i32 %u)
  ret i32 %r
}
)";
}

/// The whole way through the plugin, then the module as text.
std::string runPipeline(unsigned Depth) {
  LLVMContext Context;
  SMDiagnostic Error;
  std::unique_ptr<Module> M =
      parseAssemblyString(makeProgram(Depth), Error, Context);
  if (!M)
    return Error.getMessage().str();

  LoopAnalysisManager LAM;
  FunctionAnalysisManager FAM;
  CGSCCAnalysisManager CGAM;
  ModuleAnalysisManager MAM;
  PassBuilder PB;
  registerPlugin(PB);
  PB.registerModuleAnalyses(MAM);
  PB.registerCGSCCAnalyses(CGAM);
  PB.registerFunctionAnalyses(FAM);
  PB.registerLoopAnalyses(LAM);
  PB.crossRegisterProxies(LAM, FAM, CGAM, MAM);
  ModulePassManager MPM;
  if (auto Failed = PB.parsePassPipeline(MPM, "inlinerecursion-pipeline"))
    return toString(std::move(Failed));
  MPM.run(*M, MAM);

  std::string Text;
  raw_string_ostream OS(Text);
  M->print(OS, nullptr);
  return Text;
}

TEST(ThreadsTest, PipelinesSideBySideGiveWhatTheyGiveAlone) {
  constexpr unsigned Threads = 8, Rounds = 20;
  std::vector<std::string> Alone;
  for (unsigned I = 0; I != Threads; ++I)
    Alone.push_back(runPipeline(I % 6));
  // Otherwise there would be nothing to get mixed up.
  EXPECT_NE(Alone[5].find("down.recurse.clone.9"), std::string::npos)
      << Alone[5];
  EXPECT_EQ(Alone[0].find("down.recurse.clone.3"), std::string::npos);
  EXPECT_NE(Alone[5].find("around.specialized"), std::string::npos);

  std::vector<std::vector<std::string>> SideBySide(Threads);
  std::vector<std::thread> Running;
  for (unsigned I = 0; I != Threads; ++I)
    Running.emplace_back([&SideBySide, I] {
      for (unsigned Round = 0; Round != Rounds; ++Round)
        SideBySide[I].push_back(runPipeline(I % 6));
    });
  for (std::thread &T : Running)
    T.join();
  for (unsigned I = 0; I != Threads; ++I)
    for (const std::string &Text : SideBySide[I])
      EXPECT_EQ(Text, Alone[I]) << "in thread " << I;
}

} // namespace
