//===- Pipeline.cpp - Where the plugin stands in a pipeline ---------------===//

#include "plugin/pipeline/Pipeline.h"
#include "plugin/automatic/AutoPass.h"
#include "plugin/automatic/BehindInliner.h"
#include "plugin/automatic/LTOMarker.h"
#include "plugin/legality/CallRepair.h"
#include "plugin/legality/DiscardedProfiles.h"
#include "plugin/legality/Protection.h"
#include "plugin/literal/Plans.h"
#include "plugin/literal/PluginPass.h"
#include "plugin/literal/Promotion.h"
#include "plugin/literal/Requests.h"
#include "plugin/literal/RingInlining.h"
#include "plugin/loops/EarlySums.h"
#include "plugin/loops/LoopHints.h"
#include "plugin/loops/MergedCalls.h"
#include "plugin/pipeline/Parameters.h"
#include "plugin/tell/Summary.h"
#include "llvm/Passes/OptimizationLevel.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Transforms/Scalar/LoopPassManager.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<bool>
    Enable("inlinerecursion-enable", cl::init(true), cl::Hidden,
           cl::desc("Let the plugin take part in the default pipelines"));

/// The parameters of a default pipeline, from the options.
static PassParameters getDefaultParameters(OptimizationLevel Level) {
  PassParameters Parameters;
  if (Level != OptimizationLevel::O3)
    Parameters.Limits = getBoundsBelowO3();
  return Parameters;
}

void llvm::inlinerecursion::addPipeline(ModulePassManager &MPM,
                                        const PassParameters &Parameters,
                                        bool SecondLookFollows) {
  MPM.addPass(PromotionPass());
  MPM.addPass(PlansPass());
  MPM.addPass(RequestsPass(Parameters.FindRequests,
                           /*GrantsCopies=*/Parameters.Auto));
  MPM.addPass(ProtectionPass());
  MPM.addPass(
      PluginPass(Parameters.Level, {/*RingInlining=*/true, Parameters.Auto,
                                    /*Summary=*/true}));
  MPM.addPass(RingInliningPass());
  if (Parameters.Auto)
    MPM.addPass(AutoPass(Parameters.Limits, SecondLookFollows));
  MPM.addPass(CallRepairPass());
  MPM.addPass(ChainLoopsPass());
  if (!SecondLookFollows)
    MPM.addPass(SummaryPass());
}

void llvm::inlinerecursion::registerExtensionPoints(PassBuilder &PB) {
  if (!Enable)
    return;
  // After SROA, so that the counts describe SSA form, and directly before the
  // inliner.  Nothing at O0, where the user wants to see his functions.
  PB.registerPipelineEarlySimplificationEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        if (Level != OptimizationLevel::O0)
          addPipeline(MPM, getDefaultParameters(Level),
                      /*SecondLookFollows=*/true);
      });
  PB.registerOptimizerEarlyEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        const PassParameters Parameters = getDefaultParameters(Level);
        if (Level == OptimizationLevel::O0)
          return;
        MPM.addPass(DiscardedProfilesPass());
        if (Parameters.Auto)
          MPM.addPass(BehindInlinerPass(Parameters.Limits, Level));
        MPM.addPass(createModuleToFunctionPassAdaptor(MergedCallsPass()));
        MPM.addPass(SummaryPass());
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
        MPM.addPass(LTOMarkerPass());
      });
  PB.registerFullLinkTimeOptimizationLastEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        if (Level != OptimizationLevel::O0)
          MPM.addPass(createModuleToFunctionPassAdaptor(MergedCallsPass()));
      });
  // Full LTO has an inliner of its own, over calls between files.
  PB.registerFullLinkTimeOptimizationEarlyEPCallback(
      [](ModulePassManager &MPM, OptimizationLevel Level) {
        if (Level != OptimizationLevel::O0)
          addPipeline(MPM, getDefaultParameters(Level),
                      /*SecondLookFollows=*/false);
      });
}
