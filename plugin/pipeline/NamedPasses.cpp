//===- NamedPasses.cpp - The passes that the plugin offers ----------------===//

#include "plugin/pipeline/NamedPasses.h"
#include "plugin/automatic/AutoPass.h"
#include "plugin/automatic/BehindInliner.h"
#include "plugin/automatic/LTOMarker.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/CallRepair.h"
#include "plugin/legality/DiscardedProfiles.h"
#include "plugin/legality/Protection.h"
#include "plugin/literal/Plans.h"
#include "plugin/literal/PluginPass.h"
#include "plugin/literal/Printer.h"
#include "plugin/literal/Promotion.h"
#include "plugin/literal/Requests.h"
#include "plugin/literal/RingInlining.h"
#include "plugin/loops/EarlySums.h"
#include "plugin/loops/LoopHints.h"
#include "plugin/loops/MergedCalls.h"
#include "plugin/pipeline/Parameters.h"
#include "plugin/pipeline/Pipeline.h"
#include "plugin/tell/Summary.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/WithColor.h"
#include "llvm/Transforms/Scalar/LoopPassManager.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// One that runs in a pass manager of type \p ManagerT: `Name` or
/// `Name<parameters>`.
template <typename ManagerT> struct NamedPass {
  StringLiteral Name;
  /// Empty for a name that stands for several passes.
  StringRef ClassName;
  AcceptedParameters Accepted;
  void (*Add)(ManagerT &Manager, const PassParameters &Parameters);
};
} // namespace

/// How a pass is made of its parameters.
template <typename PassT, typename ManagerT>
static void add(ManagerT &Manager, const PassParameters &) {
  Manager.addPass(PassT());
}
template <typename PassT>
static void addWithLevel(ModulePassManager &MPM,
                         const PassParameters &Parameters) {
  MPM.addPass(PassT(Parameters.Level));
}
template <typename PassT>
static void addWithLimits(ModulePassManager &MPM,
                          const PassParameters &Parameters) {
  MPM.addPass(PassT(Parameters.Limits));
}
static void addRequests(ModulePassManager &MPM,
                        const PassParameters &Parameters) {
  MPM.addPass(RequestsPass(Parameters.FindRequests));
}

static void addWholePipeline(ModulePassManager &MPM,
                             const PassParameters &Parameters) {
  addPipeline(MPM, Parameters, /*SecondLookFollows=*/false);
}

static constexpr AcceptedParameters NoParameters = {};
static constexpr AcceptedParameters LevelOnly = {/*Level=*/true};
static constexpr AcceptedParameters FindOnly = {/*Level=*/false,
                                                /*FindRequests=*/true};
static constexpr AcceptedParameters LimitsOnly = {
    /*Level=*/false, /*FindRequests=*/false, /*Auto=*/false, /*Limits=*/true};
static constexpr AcceptedParameters AllParameters = {
    /*Level=*/true, /*FindRequests=*/true, /*Auto=*/true, /*Limits=*/true};

static const NamedPass<ModulePassManager> ModulePasses[] = {
    {PassName, PluginPass::name(), LevelOnly, addWithLevel<PluginPass>},
    {PrinterName, PrinterPass::name(), LevelOnly, addWithLevel<PrinterPass>},
    {PlansName, PlansPass::name(), NoParameters, add<PlansPass>},
    {RequestsName, RequestsPass::name(), FindOnly, addRequests},
    {ProtectionName, ProtectionPass::name(), NoParameters, add<ProtectionPass>},
    {CallRepairName, CallRepairPass::name(), NoParameters, add<CallRepairPass>},
    {DiscardedProfilesName, DiscardedProfilesPass::name(), NoParameters,
     add<DiscardedProfilesPass>},
    {PromotionName, PromotionPass::name(), NoParameters, add<PromotionPass>},
    {RingInliningName, RingInliningPass::name(), NoParameters,
     add<RingInliningPass>},
    {ChainLoopsName, ChainLoopsPass::name(), NoParameters, add<ChainLoopsPass>},
    {AutoName, AutoPass::name(), LimitsOnly, addWithLimits<AutoPass>},
    {BehindInlinerName, BehindInlinerPass::name(), LimitsOnly,
     addWithLimits<BehindInlinerPass>},
    {LTOMarkerName, LTOMarkerPass::name(), NoParameters, add<LTOMarkerPass>},
    {SummaryName, SummaryPass::name(), NoParameters, add<SummaryPass>},
    {PipelineName, "", AllParameters, addWholePipeline},
};

static const NamedPass<FunctionPassManager> FunctionPasses[] = {
    {CutRecurrencesName, CutRecurrencesPass::name(), NoParameters,
     add<CutRecurrencesPass>},
    {EarlySumsName, EarlySumsPass::name(), NoParameters, add<EarlySumsPass>},
    {MergedCallsName, MergedCallsPass::name(), NoParameters,
     add<MergedCallsPass>},
};

static const NamedPass<LoopPassManager> LoopPasses[] = {
    {LoopHintsName, LoopHintsPass::name(), NoParameters, add<LoopHintsPass>},
};

/// Adds what \p Text names to \p Manager.  False if it is none of \p Passes, or
/// not well-formed; the latter is reported, and the caller then stops.
template <typename ManagerT>
static bool parsePass(StringRef Text, ManagerT &Manager,
                      ArrayRef<NamedPass<ManagerT>> Passes) {
  for (const NamedPass<ManagerT> &Pass : Passes) {
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
    Pass.Add(Manager, *Parameters);
    return true;
  }
  return false;
}

/// Registers \p Passes, which a table holds as long as the plugin is loaded.
template <typename ManagerT>
static void registerTable(PassBuilder &PB,
                          ArrayRef<NamedPass<ManagerT>> Passes) {
  if (PassInstrumentationCallbacks *PIC = PB.getPassInstrumentationCallbacks())
    for (const NamedPass<ManagerT> &Pass : Passes)
      if (!Pass.ClassName.empty())
        PIC->addClassToPassName(Pass.ClassName, Pass.Name);
  PB.registerPipelineParsingCallback(
      [Passes](StringRef Text, ManagerT &Manager,
               ArrayRef<PassBuilder::PipelineElement>) {
        return parsePass(Text, Manager, Passes);
      });
}

void llvm::inlinerecursion::registerNamedPasses(PassBuilder &PB) {
  registerTable(PB, ArrayRef(ModulePasses));
  registerTable(PB, ArrayRef(FunctionPasses));
  registerTable(PB, ArrayRef(LoopPasses));
}
