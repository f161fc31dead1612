//===- Printer.cpp - What the pass would decide ---------------------------===//

#include "plugin/literal/Printer.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/literal/ObservedRun.h"
#include "plugin/literal/PluginPass.h"
#include "plugin/plan/PlanSpec.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/Debug.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static void printDecision(Function &F,
                          InlineRecursion::InlineRecursionCosting *Costing,
                          const Verdict &V) {
  raw_ostream &OS = dbgs();
  if (Costing) {
    Costing->printFunctionParameters();
    const auto *Depth =
        cast_or_null<SCEVConstant>(Costing->estimateRecursionDepth());
    OS << "   EstimatedDepth: ";
    if (Depth)
      OS << Depth->getAPInt() << "\n";
    else
      OS << "unknown\n";
    OS << "   ExternalCallSites: "
       << Costing->NumOfCandidateFunCallSiteInMod -
              Costing->NumOfCandidateFunCallSite.lookup(&F)
       << "\n   Benefit: ";
    if (auto Estimate = Costing->estimateInlineBenefit())
      OS << Estimate->Benefit << ", limit " << Estimate->Limit << "\n";
    else
      OS << "not estimated\n";
  } else {
    OS << "InlineRecursion: Function " << F.getName() << " not costed\n";
  }
  OS << "   Decision: " << (V.Accepted ? "" : "not chained, ") << V.str()
     << "\n   Plan: " << (V.Plan.empty() ? PlanSpec().str() : V.Plan) << "\n";
}

/// Brings the uses of functions in the copy of \p M that \p Copied leads to
/// into the order of \p M.  Who calls a function is counted, and told, in the
/// order of its uses, and that of a copy is the order in which it was cloned.
static void restoreUseOrder(const Module &M, const ValueToValueMapTy &Copied) {
  using Place = std::pair<const User *, unsigned>;
  for (const Function &F : M) {
    DenseMap<Place, unsigned> Order;
    for (const Use &U : F.uses())
      Order.try_emplace(
          {cast_or_null<User>(Copied.lookup(U.getUser())), U.getOperandNo()},
          Order.size());
    auto GetPosition = [&Order](const Use &U) {
      const auto Found = Order.find({U.getUser(), U.getOperandNo()});
      return Found == Order.end() ? Order.size() : Found->second;
    };
    Copied.lookup(&F)->sortUseList([&](const Use &A, const Use &B) {
      return GetPosition(A) < GetPosition(B);
    });
  }
}

PreservedAnalyses PrinterPass::run(Module &M, ModuleAnalysisManager &) {
  ValueToValueMapTy Copied;
  std::unique_ptr<Module> Copy = CloneModule(M, Copied);
  restoreUseOrder(M, Copied);

  LoopAnalysisManager LAM;
  FunctionAnalysisManager FAM;
  CGSCCAnalysisManager CGAM;
  ModuleAnalysisManager MAM;
  PassBuilder PB;
  PB.registerModuleAnalyses(MAM);
  PB.registerCGSCCAnalyses(CGAM);
  PB.registerFunctionAnalyses(FAM);
  PB.registerLoopAnalyses(LAM);
  PB.crossRegisterProxies(LAM, FAM, CGAM, MAM);

  SingleRun Alone;
  runObserved(*Copy, FAM, Level, printDecision);
  return PreservedAnalyses::all();
}

void PrinterPass::printPipeline(raw_ostream &OS,
                                function_ref<StringRef(StringRef)>) {
  printWithLevel(OS, PrinterName, Level);
}
