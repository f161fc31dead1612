//===- Pipeline.cpp - How the pass gets into a compiler's pipeline --------===//

#include "Pipeline.h"
#include "../pass/InlineRecursion.h"
#include "LoopHints.h"
#include "ObservedRun.h"
#include "Printer.h"
#include "Remarks.h"
#include "SingleRun.h"
#include "llvm/Passes/OptimizationLevel.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/WithColor.h"
#include "llvm/Transforms/Scalar/LoopPassManager.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static constexpr StringLiteral PassName = "inlinerecursion";
static constexpr StringLiteral PrinterName = "print<inlinerecursion>";

static void printWithLevel(raw_ostream &OS, StringRef Name, int Level) {
  OS << Name;
  if (Level)
    OS << "<level=" << Level << ">";
}

PreservedAnalyses PluginPass::run(Module &M, ModuleAnalysisManager &MAM) {
  SingleRun Alone;
  if (!areRemarksEnabled(M))
    return InlineRecursionPass(Level).run(M, MAM);

  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  auto EmitRemark = [](Function &F, InlineRecursion::InlineRecursionCosting *,
                       const Verdict &V) { emitRemark(F, V); };
  return runObserved(M, FAM, Level, EmitRemark) ? PreservedAnalyses::none()
                                                : PreservedAnalyses::all();
}

void PluginPass::printPipeline(raw_ostream &OS,
                               function_ref<StringRef(StringRef)>) {
  printWithLevel(OS, PassName, Level);
}

void PrinterPass::printPipeline(raw_ostream &OS,
                                function_ref<StringRef(StringRef)>) {
  printWithLevel(OS, PrinterName, Level);
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

namespace {
/// One pass that the plugin offers by name: `Name` or `Name<parameters>`.
struct NamedPass {
  StringLiteral Name;
  StringRef ClassName;
  void (*Add)(ModulePassManager &MPM, int Level);
};
} // namespace

static ArrayRef<NamedPass> getNamedPasses() {
  static const NamedPass Passes[] = {
      {PassName, PluginPass::name(),
       [](ModulePassManager &MPM, int Level) {
         MPM.addPass(PluginPass(Level));
       }},
      {PrinterName, PrinterPass::name(),
       [](ModulePassManager &MPM, int Level) {
         MPM.addPass(PrinterPass(Level));
       }},
  };
  return Passes;
}

/// Adds the pass that \p Text names to \p MPM.  False if it is not ours, or
/// not well-formed; the latter is reported, and the caller then stops.
static bool parsePass(StringRef Text, ModulePassManager &MPM) {
  for (const NamedPass &Pass : getNamedPasses()) {
    StringRef Params = Text;
    if (!Params.consume_front(Pass.Name))
      continue;
    if (!Params.empty() &&
        !(Params.consume_front("<") && Params.consume_back(">")))
      continue;
    Expected<int> Level = parseLevelParameter(Params);
    if (!Level) {
      WithColor::error(errs(), Pass.Name)
          << toString(Level.takeError()) << "\n";
      return false;
    }
    Pass.Add(MPM, *Level);
    return true;
  }
  return false;
}

void llvm::inlinerecursion::registerPipeline(PassBuilder &PB) {
  if (PassInstrumentationCallbacks *PIC = PB.getPassInstrumentationCallbacks())
    for (const NamedPass &Pass : getNamedPasses())
      PIC->addClassToPassName(Pass.ClassName, Pass.Name);

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
  PB.registerLateLoopOptimizationsEPCallback(
      [](LoopPassManager &LPM, OptimizationLevel) {
        LPM.addPass(LoopHintsPass());
      });
  // Full LTO has an inliner of its own, over calls between files.
  PB.registerFullLinkTimeOptimizationEarlyEPCallback(AddAboveO0);
}
