//===- OptionsTest.cpp - What users can set -------------------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

template <typename T>
void expectOption(const char *Name, T Default, cl::OptionHidden Hidden,
                  const char *Description) {
  SCOPED_TRACE(Name);
  auto &Option = getOption<T>(Name);
  EXPECT_EQ(Option.HelpStr, Description);
  EXPECT_EQ(Option.getOptionHiddenFlag(), Hidden);
  EXPECT_TRUE(Option.ValueStr.empty());
  EXPECT_EQ(Option.getNumOccurrencesFlag(), cl::Optional);
  EXPECT_THAT(Option.Categories, ElementsAre(&cl::getGeneralCategory()));
  ASSERT_TRUE(Option.getDefault().hasValue());
  EXPECT_EQ(Option.getDefault().getValue(), Default);
  EXPECT_EQ(static_cast<T>(Option), Default);
}

TEST(OptionsTest, AllEight) {
  expectOption<unsigned>("inline-recursion-depth", 1, cl::Hidden,
                         "Inline recursion function depth");
  expectOption<int>("inline-recursion-opt-level", 0, cl::Hidden,
                    "Inline recursion optimization level");
  expectOption<unsigned>(
      "special-inline-recursion-depth", 10, cl::ReallyHidden,
      "Speical Inline recursion function depth to avoid code bloat");
  expectOption<unsigned>("maximum-clone-limit-inline-recursion", 25, cl::Hidden,
                         "Inline recursion max clone limit");
  expectOption<unsigned>(
      "inline-recursion-max-callsite-fun", 1, cl::ReallyHidden,
      "Maximum callsites of a candidate function inside a function");
  expectOption<unsigned>(
      "inline-recursion-max-callsite-mod", 2, cl::ReallyHidden,
      "Maximum number of callsite of a candidate function inside a module");
  expectOption<unsigned>("default-recursion-depth-threshold", 7, cl::Hidden,
                         "Maximum recursion depth eligible for inlining");
  expectOption<unsigned>(
      "inline-recursion-profitablity", 10, cl::Hidden,
      "Inline profitablity percentage considering function size");
}

std::string helpText(bool Hidden) {
  // Help is printed for the command that was parsed last.
  const char *Arguments[] = {"test"};
  cl::ParseCommandLineOptions(1, Arguments);
  ::testing::internal::CaptureStdout();
  cl::PrintHelpMessage(Hidden, /*Categorized=*/true);
  outs().flush();
  return ::testing::internal::GetCapturedStdout();
}

TEST(OptionsTest, HelpShowsOnlyWhatIsMeantToBeShown) {
  const std::string Plain = helpText(/*Hidden=*/false);
  const std::string Full = helpText(/*Hidden=*/true);
  for (const char *Name :
       {"--inline-recursion-depth=", "--inline-recursion-opt-level=",
        "--maximum-clone-limit-inline-recursion=",
        "--default-recursion-depth-threshold=",
        "--inline-recursion-profitablity="}) {
    EXPECT_THAT(Plain, Not(HasSubstr(Name)));
    EXPECT_THAT(Full, HasSubstr(Name));
  }
  for (const char *Name : {"--special-inline-recursion-depth=",
                           "--inline-recursion-max-callsite-fun=",
                           "--inline-recursion-max-callsite-mod="}) {
    EXPECT_THAT(Plain, Not(HasSubstr(Name)));
    EXPECT_THAT(Full, Not(HasSubstr(Name)));
  }
}

class DepthOptionTest : public PassTest {};

TEST_F(DepthOptionTest, AnAssignmentCallsTheOptionsCallback) {
  auto &Option = getOption<unsigned>("inline-recursion-depth");
  std::vector<unsigned> Assigned;
  Option.setCallback(
      [&Assigned](const unsigned &Value) { Assigned.push_back(Value); });
  TestModule TM(countdown("f"));
  LoggingDriver Driver(TM, 4);
  Driver->processModule(TM.module());
  Option.setCallback([](const unsigned &) {});
  // Reset and set for f, then reset for each of its ten copies.
  ASSERT_EQ(Assigned.size(), 12u);
  EXPECT_EQ(Assigned[0], 1u);
  EXPECT_EQ(Assigned[1], 10u);
  for (size_t I = 2; I < Assigned.size(); ++I)
    EXPECT_EQ(Assigned[I], 1u);
  EXPECT_EQ(Option.getDefault().getValue(), 1u);
}

} // namespace
