//===- tiny-compiler.cpp - The pass inside another compiler ---------------===//
//
// Reads a module from a file, runs the pass and then the inliner's pipeline, and
// prints the module: what a compiler on LLVM does that links the library rather
// than loading the plugin.
//
//===----------------------------------------------------------------------===//

#include "pass/InlineRecursion.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/IRReader/IRReader.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/SourceMgr.h"
#include "llvm/Support/raw_ostream.h"

using namespace llvm;

int main(int Argc, char **Argv) {
  if (Argc != 2) {
    errs() << "usage: " << Argv[0] << " FILE.ll\n";
    return 1;
  }
  LLVMContext Context;
  SMDiagnostic Error;
  std::unique_ptr<Module> M = parseIRFile(Argv[1], Error, Context);
  if (!M) {
    Error.print(Argv[0], errs());
    return 1;
  }

  PassBuilder PB;
  PB.registerPipelineEarlySimplificationEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel) {
        MPM.addPass(InlineRecursionPass(/*OptLevel=*/3));
      });
  LoopAnalysisManager LAM;
  FunctionAnalysisManager FAM;
  CGSCCAnalysisManager CGAM;
  ModuleAnalysisManager MAM;
  PB.registerModuleAnalyses(MAM);
  PB.registerCGSCCAnalyses(CGAM);
  PB.registerFunctionAnalyses(FAM);
  PB.registerLoopAnalyses(LAM);
  PB.crossRegisterProxies(LAM, FAM, CGAM, MAM);
  PB.buildPerModuleDefaultPipeline(OptimizationLevel::O1).run(*M, MAM);
  M->print(outs(), nullptr);
  return 0;
}
