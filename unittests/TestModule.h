//===- TestModule.h - What every unit test of the pass needs ----*- C++ -*-===//
///
/// \file
/// A module from text with its analyses, option values that are put back at the
/// end of a test, and a driver record whose getters keep a log.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_UNITTESTS_TESTMODULE_H
#define INLINERECURSION_UNITTESTS_TESTMODULE_H

#include "pass/InlineRecursion.h"
#include "llvm/ADT/StringRef.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/AsmParser/Parser.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/Verifier.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/SourceMgr.h"
#include "llvm/Support/raw_ostream.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace llvm::unittest {

using Costing = InlineRecursion::InlineRecursionCosting;

/// A module and the analyses of its functions.
class TestModule {
public:
  /// Parses and verifies \p Assembly; what is wrong with it ends the process.
  explicit TestModule(StringRef Assembly = "") {
    SMDiagnostic Error;
    M = parseAssemblyString(Assembly, Error, Context);
    if (!M) {
      Error.print("test module", errs());
      std::abort();
    }
    if (verifyModule(*M, &errs()))
      std::abort();
    PassBuilder PB;
    PB.registerModuleAnalyses(MAM);
    PB.registerCGSCCAnalyses(CGAM);
    PB.registerFunctionAnalyses(FAM);
    PB.registerLoopAnalyses(LAM);
    PB.crossRegisterProxies(LAM, FAM, CGAM, MAM);
  }

  Module &module() { return *M; }
  ModuleAnalysisManager &analyses() { return MAM; }
  FunctionAnalysisManager &functionAnalyses() {
    return MAM.getResult<FunctionAnalysisManagerModuleProxy>(*M).getManager();
  }

  Function &function(StringRef Name) {
    Function *F = M->getFunction(Name);
    if (!F) {
      errs() << "test module has no function " << Name << "\n";
      std::abort();
    }
    return *F;
  }

  /// The instruction of that name in \p Parent, or null.
  static Instruction *find(Function &Parent, StringRef Name) {
    for (BasicBlock &BB : Parent)
      for (Instruction &I : BB)
        if (I.getName() == Name)
          return &I;
    return nullptr;
  }

  ScalarEvolution &scalarEvolution(Function &F) {
    return FAM.getResult<ScalarEvolutionAnalysis>(F);
  }
  DominatorTree &dominatorTree(Function &F) {
    return FAM.getResult<DominatorTreeAnalysis>(F);
  }
  LoopInfo &loopInfo(Function &F) { return FAM.getResult<LoopAnalysis>(F); }

  /// A record of the function that has not been analysed yet.
  Costing record(StringRef Name, unsigned OptLevel = 0) {
    Function &F = function(Name);
    return Costing(&F, &scalarEvolution(F), &dominatorTree(F), OptLevel);
  }
  Costing analyzedRecord(StringRef Name, unsigned OptLevel = 0) {
    Costing Record = record(Name, OptLevel);
    Record.analyzeFunction();
    return Record;
  }

  /// Names of the functions that the module holds, in its order.
  std::vector<std::string> functionNames() {
    std::vector<std::string> Names;
    for (Function &F : *M)
      Names.push_back(F.getName().str());
    return Names;
  }

  /// Names of what the plain calls of \p Caller call, in layout order.
  std::vector<std::string> calleesOf(StringRef Caller) {
    std::vector<std::string> Names;
    for (BasicBlock &BB : function(Caller))
      for (Instruction &I : BB)
        if (auto *Call = dyn_cast<CallInst>(&I))
          Names.push_back(Call->getCalledOperand()->getName().str());
    return Names;
  }

  std::string text() {
    std::string Text;
    raw_string_ostream OS(Text);
    OS << *M;
    return OS.str();
  }

  bool isValid() { return !verifyModule(*M, &errs()); }

private:
  LLVMContext Context;
  std::unique_ptr<Module> M;
  LoopAnalysisManager LAM;
  FunctionAnalysisManager FAM;
  CGSCCAnalysisManager CGAM;
  ModuleAnalysisManager MAM;
};

/// The pass's options are local to its file, so they are found by their name.
template <typename T> cl::opt<T> &getOption(StringRef Name) {
  cl::Option *Option = cl::getRegisteredOptions().lookup(Name);
  if (!Option) {
    errs() << "no option " << Name << "\n";
    std::abort();
  }
  return *static_cast<cl::opt<T> *>(Option);
}

/// Gives an option a value for the lifetime of the object.
template <typename T> class ScopedOption {
public:
  ScopedOption(StringRef Name, T Value)
      : Option(getOption<T>(Name)), Saved(Option) {
    Option = Value;
  }
  ~ScopedOption() { Option = Saved; }
  ScopedOption(const ScopedOption &) = delete;
  ScopedOption &operator=(const ScopedOption &) = delete;

private:
  cl::opt<T> &Option;
  T Saved;
};

/// Every test of the pass may change the depth, and most ask for it.
class PassTest : public ::testing::Test {
protected:
  static unsigned depth() {
    return getOption<unsigned>("inline-recursion-depth");
  }
  static void setDepth(unsigned Depth) {
    getOption<unsigned>("inline-recursion-depth") = Depth;
  }

  /// What \p Action writes to dbgs(), which is errs() unless buffering was
  /// asked for.
  static std::string debugOutputOf(function_ref<void()> Action) {
    ::testing::internal::CaptureStderr();
    Action();
    errs().flush();
    return ::testing::internal::GetCapturedStderr();
  }

private:
  ScopedOption<unsigned> Depth{"inline-recursion-depth", 1};
};

/// A driver over a module, with a log of what it asked its getters for.
class LoggingDriver {
public:
  explicit LoggingDriver(TestModule &TM, unsigned OptLevel = 0,
                         int64_t SpecialDepthLimit = 10)
      : GetSE([this, &TM](Function &F) {
          Log.push_back("SE " + F.getName().str());
          return &TM.scalarEvolution(F);
        }),
        GetDT([this, &TM](Function &F) {
          Log.push_back("DT " + F.getName().str());
          return &TM.dominatorTree(F);
        }) {
    Driver.SpecializeSeen = false;
    Driver.SpecialDepthLimit = SpecialDepthLimit;
    Driver.OptLevel = OptLevel;
    Driver.CloneCount = 0;
    Driver.GetSE = GetSE;
    Driver.GetDT = GetDT;
  }
  LoggingDriver(const LoggingDriver &) = delete;
  LoggingDriver &operator=(const LoggingDriver &) = delete;

  InlineRecursion *operator->() { return &Driver; }
  const std::vector<std::string> &log() const { return Log; }

private:
  std::vector<std::string> Log;
  std::function<ScalarEvolution *(Function &)> GetSE;
  std::function<DominatorTree *(Function &)> GetDT;
  InlineRecursion Driver;
};

/// A function of 6 instructions in 3 blocks, with one branch and one call, of
/// itself.
inline std::string countdown(const std::string &Name,
                             const std::string &Attributes = "") {
  return "define i32 @" + Name + "(i32 %n) " + Attributes + R"( {
entry:
  %done = icmp sle i32 %n, 0
  br i1 %done, label %base, label %recurse
base:
  ret i32 1
recurse:
  %less = sub i32 %n, 1
  %r = call i32 @)" +
         Name + R"((i32 %less)
  ret i32 %r
}
)";
}

/// A countdown that asks for a ring of \p Divisor copies.  ScalarEvolution
/// knows the bound of an unsigned remainder only by a power of two.
inline std::string remainder(const std::string &Name, unsigned Divisor) {
  return "define i32 @" + Name +
         R"((i32 %n) "specialize-inline-recursion-function" {
entry:
  %rem = urem i32 %n, )" +
         std::to_string(Divisor) + R"(
  %done = icmp eq i32 %rem, 0
  br i1 %done, label %base, label %recurse
base:
  ret i32 1
recurse:
  %less = sub i32 %n, 1
  %r = call i32 @)" +
         Name + R"((i32 %less)
  ret i32 %r
}
)";
}

/// A function that calls \p Callee once.
inline std::string caller(const std::string &Name, const std::string &Callee) {
  return "define i32 @" + Name + "(i32 %n) {\n  %r = call i32 @" + Callee +
         "(i32 %n)\n  ret i32 %r\n}\n";
}

/// A function that calls nothing.
inline std::string leaf(const std::string &Name) {
  return "define void @" + Name + "() {\n  ret void\n}\n";
}

} // namespace llvm::unittest

#endif // INLINERECURSION_UNITTESTS_TESTMODULE_H
