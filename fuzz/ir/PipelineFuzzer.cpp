//===- PipelineFuzzer.cpp - Bitcode through the plugin's pipeline ---------===//
//
/// \file
/// A target of libFuzzer: a module that the verifier accepts has to come out of
/// the plugin's passes as one.  Bytes are changed by way of IR, since LLVM's
/// bitcode reader is not made for arbitrary ones.
///
//===----------------------------------------------------------------------===//

#include "Mutations.h"
#include "plugin/pipeline/Registration.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/Verifier.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/ErrorHandling.h"
#include "llvm/Support/raw_ostream.h"
#include "llvm/Support/xxhash.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Runs the pipeline at a level that depends on the input.
static void runPipeline(Module &M, uint64_t Hash) {
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

  std::string Text =
      "inlinerecursion-pipeline<level=" + std::to_string(Hash % 5) + ">";
  // Half of the inputs in the form that the passes are made for.
  if (Hash / 5 % 2)
    Text = "function(sroa,early-cse,simplifycfg)," + Text;
  ModulePassManager MPM;
  if (Error E = PB.parsePassPipeline(MPM, Text))
    report_fatal_error(std::move(E));
  MPM.run(M, MAM);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size) {
  LLVMContext Context;
  std::unique_ptr<Module> M = parseAndVerify(Data, Size, Context);
  if (!M)
    return 0;
  runPipeline(*M, xxHash64(ArrayRef(Data, Size)));
  if (verifyModule(*M, &errs()))
    report_fatal_error("the plugin has broken a module");
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *Data, size_t Size,
                                          size_t MaxSize, unsigned Seed) {
  static std::unique_ptr<IRMutator> Mutator = makeMutator();
  LLVMContext Context;
  std::unique_ptr<Module> M = parseAndVerify(Data, Size, Context);
  if (!M)
    M = std::make_unique<Module>("empty", Context);
  if (!mutateOnce(*Mutator, *M, Seed, Size, MaxSize))
    return Size; // as it was
  size_t NewSize = writeModule(*M, Data, MaxSize);
  return NewSize ? NewSize : Size;
}
