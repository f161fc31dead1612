//===- Pipeline.cpp - How the pass gets into a compiler's pipeline --------===//

#include "plugin/pipeline/Pipeline.h"
#include "pass/InlineRecursion.h"
#include "plugin/automatic/AutoPass.h"
#include "plugin/automatic/BehindInliner.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/legality/CallRepair.h"
#include "plugin/legality/Protection.h"
#include "plugin/literal/ObservedRun.h"
#include "plugin/literal/Printer.h"
#include "plugin/literal/Promotion.h"
#include "plugin/literal/Requests.h"
#include "plugin/literal/RingInlining.h"
#include "plugin/loops/EarlySums.h"
#include "plugin/loops/LoopHints.h"
#include "plugin/tell/Remarks.h"
#include "llvm/Passes/OptimizationLevel.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/WithColor.h"
#include "llvm/Transforms/Scalar/LoopPassManager.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

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
  auto EmitRemark = [](Function &F,
                       InlineRecursion::InlineRecursionCosting *Costing,
                       const Verdict &V) {
    if (Costing)
      emitAnalysis(*Costing);
    emitRemark(F, V);
  };
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

void RequestsPass::printPipeline(raw_ostream &OS,
                                 function_ref<StringRef(StringRef)>) {
  OS << RequestsName << "<" << (FindRequests ? "" : "no-") << "find-requests>";
}

PassParameters::PassParameters()
    : FindRequests(isFindingRequestsEnabled()), Auto(isAutoEnabled()) {}

static Error makeParameterError(const Twine &Message) {
  return createStringError(inconvertibleErrorCode(), Message);
}

/// Reads `Name=N` into \p Value.  False if \p Parameter is something else; an
/// error if N is no number.
static Expected<bool> parseLimit(StringRef Parameter, StringRef Name,
                                 unsigned &Value) {
  StringRef Number = Parameter;
  if (!Number.consume_front(Name) || !Number.consume_front("="))
    return false;
  if (Number.getAsInteger(10, Value))
    return makeParameterError("invalid number in parameter '" + Parameter +
                              "'; " + Name + " is a number from 0 on");
  return true;
}

/// Reads one of the limits into \p Limits; else as above.
static Expected<bool> parseLimits(StringRef Parameter, AutoLimits &Limits) {
  const std::pair<StringRef, unsigned *> Known[] = {
      {"copies", &Limits.Copies},
      {"function-growth", &Limits.FunctionGrowth},
      {"module-growth", &Limits.ModuleGrowth}};
  for (auto [Name, Value] : Known) {
    Expected<bool> Found = parseLimit(Parameter, Name, *Value);
    if (!Found || *Found)
      return Found;
  }
  return false;
}

static std::string listKnown(AcceptedParameters Accepted) {
  std::string Known;
  if (Accepted.Level)
    Known += " level=N";
  if (Accepted.FindRequests)
    Known += " find-requests no-find-requests";
  if (Accepted.Auto)
    Known += " auto no-auto";
  if (Accepted.Limits)
    Known += " copies=N function-growth=N module-growth=N";
  return Known.empty() ? " none" : Known;
}

Expected<PassParameters>
llvm::inlinerecursion::parsePassParameters(StringRef Text,
                                           AcceptedParameters Accepted) {
  PassParameters Parameters;
  while (!Text.empty()) {
    StringRef Parameter;
    std::tie(Parameter, Text) = Text.split(';');
    StringRef Value = Parameter;
    if (Accepted.Level && Value.consume_front("level=")) {
      if (Value.getAsInteger(10, Parameters.Level) || Parameters.Level < 0 ||
          Parameters.Level > 4)
        return makeParameterError("invalid level in parameter '" + Parameter +
                                  "'; a level is a number from 0 to 4");
      continue;
    }
    if (Accepted.FindRequests &&
        (Parameter == "find-requests" || Parameter == "no-find-requests")) {
      Parameters.FindRequests = Parameter == "find-requests";
      continue;
    }
    if (Accepted.Auto && (Parameter == "auto" || Parameter == "no-auto")) {
      Parameters.Auto = Parameter == "auto";
      continue;
    }
    if (Accepted.Limits) {
      Expected<bool> Found = parseLimits(Parameter, Parameters.Limits);
      if (!Found)
        return Found.takeError();
      if (*Found)
        continue;
    }
    return makeParameterError("unknown parameter '" + Parameter +
                              "'; known:" + listKnown(Accepted));
  }
  return Parameters;
}

/// Code below -O3 is not to grow as much for the sake of speed.
static constexpr unsigned ShareBelowO3 = 12;

/// The parameters of a default pipeline, from the options.
static PassParameters getDefaultParameters(OptimizationLevel Level) {
  PassParameters Parameters;
  if (Level != OptimizationLevel::O3) {
    Parameters.Limits.FunctionGrowth /= ShareBelowO3;
    Parameters.Limits.ModuleGrowth /= ShareBelowO3;
  }
  return Parameters;
}

/// The whole way of a module through the plugin, up to the inliner.
static void addPipeline(ModulePassManager &MPM,
                        const PassParameters &Parameters) {
  MPM.addPass(PromotionPass());
  MPM.addPass(RequestsPass(Parameters.FindRequests));
  MPM.addPass(ProtectionPass());
  MPM.addPass(PluginPass(Parameters.Level));
  MPM.addPass(RingInliningPass());
  if (Parameters.Auto)
    MPM.addPass(AutoPass(Parameters.Limits));
  MPM.addPass(CallRepairPass());
  MPM.addPass(ChainLoopsPass());
}

namespace {
/// What the plugin offers by name: `Name` or `Name<parameters>`.
struct NamedPass {
  StringLiteral Name;
  /// Empty for a name that stands for several passes.
  StringRef ClassName;
  AcceptedParameters Accepted;
  void (*Add)(ModulePassManager &MPM, const PassParameters &Parameters);
};
} // namespace

static ArrayRef<NamedPass> getNamedPasses() {
  static const NamedPass Passes[] = {
      {PassName,
       PluginPass::name(),
       {/*Level=*/true},
       [](ModulePassManager &MPM, const PassParameters &Parameters) {
         MPM.addPass(PluginPass(Parameters.Level));
       }},
      {PrinterName,
       PrinterPass::name(),
       {/*Level=*/true},
       [](ModulePassManager &MPM, const PassParameters &Parameters) {
         MPM.addPass(PrinterPass(Parameters.Level));
       }},
      {RequestsName,
       RequestsPass::name(),
       {/*Level=*/false, /*FindRequests=*/true},
       [](ModulePassManager &MPM, const PassParameters &Parameters) {
         MPM.addPass(RequestsPass(Parameters.FindRequests));
       }},
      {ProtectionName,
       ProtectionPass::name(),
       {},
       [](ModulePassManager &MPM, const PassParameters &) {
         MPM.addPass(ProtectionPass());
       }},
      {CallRepairName,
       CallRepairPass::name(),
       {},
       [](ModulePassManager &MPM, const PassParameters &) {
         MPM.addPass(CallRepairPass());
       }},
      {PromotionName,
       PromotionPass::name(),
       {},
       [](ModulePassManager &MPM, const PassParameters &) {
         MPM.addPass(PromotionPass());
       }},
      {RingInliningName,
       RingInliningPass::name(),
       {},
       [](ModulePassManager &MPM, const PassParameters &) {
         MPM.addPass(RingInliningPass());
       }},
      {ChainLoopsName,
       ChainLoopsPass::name(),
       {},
       [](ModulePassManager &MPM, const PassParameters &) {
         MPM.addPass(ChainLoopsPass());
       }},
      {AutoName,
       AutoPass::name(),
       {/*Level=*/false, /*FindRequests=*/false, /*Auto=*/false,
        /*Limits=*/true},
       [](ModulePassManager &MPM, const PassParameters &Parameters) {
         MPM.addPass(AutoPass(Parameters.Limits));
       }},
      {BehindInlinerName,
       BehindInlinerPass::name(),
       {/*Level=*/false, /*FindRequests=*/false, /*Auto=*/false,
        /*Limits=*/true},
       [](ModulePassManager &MPM, const PassParameters &Parameters) {
         MPM.addPass(BehindInlinerPass(Parameters.Limits));
       }},
      {PipelineName,
       "",
       {/*Level=*/true, /*FindRequests=*/true, /*Auto=*/true, /*Limits=*/true},
       addPipeline},
  };
  return Passes;
}

/// Adds what \p Text names to \p MPM.  False if it is not ours, or not
/// well-formed; the latter is reported, and the caller then stops.
static bool parsePass(StringRef Text, ModulePassManager &MPM) {
  for (const NamedPass &Pass : getNamedPasses()) {
    StringRef Params = Text;
    if (!Params.consume_front(Pass.Name))
      continue;
    if (!Params.empty() &&
        !(Params.consume_front("<") && Params.consume_back(">")))
      continue;
    Expected<PassParameters> Parameters =
        parsePassParameters(Params, Pass.Accepted);
    if (!Parameters) {
      WithColor::error(errs(), Pass.Name)
          << toString(Parameters.takeError()) << "\n";
      return false;
    }
    Pass.Add(MPM, *Parameters);
    return true;
  }
  return false;
}

void llvm::inlinerecursion::registerPipeline(PassBuilder &PB) {
  if (PassInstrumentationCallbacks *PIC =
          PB.getPassInstrumentationCallbacks()) {
    for (const NamedPass &Pass : getNamedPasses())
      if (!Pass.ClassName.empty())
        PIC->addClassToPassName(Pass.ClassName, Pass.Name);
    PIC->addClassToPassName(LoopHintsPass::name(), LoopHintsName);
    PIC->addClassToPassName(CutRecurrencesPass::name(), CutRecurrencesName);
    PIC->addClassToPassName(EarlySumsPass::name(), EarlySumsName);
  }

  PB.registerPipelineParsingCallback(
      [](StringRef Name, ModulePassManager &MPM,
         ArrayRef<PassBuilder::PipelineElement>) {
        return parsePass(Name, MPM);
      });
  PB.registerPipelineParsingCallback(
      [](StringRef Name, LoopPassManager &LPM,
         ArrayRef<PassBuilder::PipelineElement>) {
        if (Name != LoopHintsName)
          return false;
        LPM.addPass(LoopHintsPass());
        return true;
      });
  PB.registerPipelineParsingCallback(
      [](StringRef Name, FunctionPassManager &FPM,
         ArrayRef<PassBuilder::PipelineElement>) {
        if (Name == CutRecurrencesName)
          FPM.addPass(CutRecurrencesPass());
        else if (Name == EarlySumsName)
          FPM.addPass(EarlySumsPass());
        else
          return false;
        return true;
      });

  // After SROA, so that the counts describe SSA form, and directly before the
  // inliner.  Nothing at O0, where the user wants to see his functions.
  auto AddAboveO0 = [](ModulePassManager &MPM, OptimizationLevel Level) {
    if (Level != OptimizationLevel::O0)
      addPipeline(MPM, getDefaultParameters(Level));
  };
  PB.registerPipelineEarlySimplificationEPCallback(AddAboveO0);
  PB.registerOptimizerEarlyEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        const PassParameters Parameters = getDefaultParameters(Level);
        if (Level != OptimizationLevel::O0 && Parameters.Auto)
          MPM.addPass(BehindInlinerPass(Parameters.Limits, Level));
      });
  PB.registerLateLoopOptimizationsEPCallback(
      [](LoopPassManager &LPM, OptimizationLevel) {
        LPM.addPass(LoopHintsPass());
      });
  PB.registerOptimizerLastEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        if (Level == OptimizationLevel::O0)
          return;
        FunctionPassManager FPM;
        FPM.addPass(CutRecurrencesPass());
        FPM.addPass(EarlySumsPass());
        MPM.addPass(createModuleToFunctionPassAdaptor(std::move(FPM)));
      });
  // Full LTO has an inliner of its own, over calls between files.
  PB.registerFullLinkTimeOptimizationEarlyEPCallback(AddAboveO0);
}
