//===- Pipeline.cpp - How the pass gets into a compiler's pipeline --------===//

#include "Pipeline.h"
#include "../pass/InlineRecursion.h"
#include "Remarks.h"
#include "llvm/Passes/OptimizationLevel.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/WithColor.h"
#include <mutex>

using namespace llvm;
using namespace llvm::inlinerecursion;

static constexpr StringLiteral PassName = "inlinerecursion";

PreservedAnalyses PluginPass::run(Module &M, ModuleAnalysisManager &MAM) {
  static std::mutex OneModuleAtATime;
  std::lock_guard<std::mutex> Lock(OneModuleAtATime);

  RemarkRecorder Recorder(M);
  PreservedAnalyses PA = InlineRecursionPass(Level).run(M, MAM);
  Recorder.emit();
  return PA;
}

void PluginPass::printPipeline(raw_ostream &OS,
                               function_ref<StringRef(StringRef)>) {
  OS << PassName;
  if (Level)
    OS << "<level=" << Level << ">";
}

Expected<int> llvm::inlinerecursion::parseLevelParameter(StringRef Params) {
  int Level = 0;
  while (!Params.empty()) {
    StringRef Param;
    std::tie(Param, Params) = Params.split(';');
    StringRef Value = Param;
    if (!Value.consume_front("level="))
      return createStringError(inconvertibleErrorCode(),
                               "unknown parameter '" + Param +
                                   "'; the one parameter is level=N");
    if (Value.getAsInteger(10, Level) || Level < 0 || Level > 4)
      return createStringError(inconvertibleErrorCode(),
                               "invalid level in parameter '" + Param +
                                   "'; a level is a number from 0 to 4");
  }
  return Level;
}

/// Adds the pass that \p Text names to \p MPM.  False if it is not ours, or
/// not well-formed; the latter is reported, and the caller then stops.
static bool parsePass(StringRef Text, ModulePassManager &MPM) {
  if (!Text.consume_front(PassName))
    return false;
  if (!Text.empty() && !(Text.consume_front("<") && Text.consume_back(">")))
    return false;
  Expected<int> Level = parseLevelParameter(Text);
  if (!Level) {
    WithColor::error(errs(), PassName) << toString(Level.takeError()) << "\n";
    return false;
  }
  MPM.addPass(PluginPass(*Level));
  return true;
}

void llvm::inlinerecursion::registerPipeline(PassBuilder &PB) {
  if (PassInstrumentationCallbacks *PIC = PB.getPassInstrumentationCallbacks())
    PIC->addClassToPassName(PluginPass::name(), PassName);

  PB.registerPipelineParsingCallback(
      [](StringRef Name, ModulePassManager &MPM,
         ArrayRef<PassBuilder::PipelineElement>) {
        return parsePass(Name, MPM);
      });

  // After SROA, so that the counts describe SSA form, and directly before the
  // inliner.  Nothing at O0, where the user wants to see his functions.
  auto AddAboveO0 = [](ModulePassManager &MPM, OptimizationLevel Level) {
    if (Level != OptimizationLevel::O0)
      MPM.addPass(PluginPass(0));
  };
  PB.registerPipelineEarlySimplificationEPCallback(AddAboveO0);
  // Full LTO has an inliner of its own, over calls between files.
  PB.registerFullLinkTimeOptimizationEarlyEPCallback(AddAboveO0);
}
