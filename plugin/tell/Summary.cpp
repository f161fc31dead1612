//===- Summary.cpp - One line for each module -----------------------------===//

#include "plugin/tell/Summary.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/Planned.h"
#include "plugin/tell/Decisions.h"
#include "plugin/tell/PlanRecord.h"
#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

/// A remark needs a function to hang on: the first one of \p Decided that is
/// still there, or else the first one of \p M.  Null if there is no function.
static Function *findPlace(Module &M, ArrayRef<Decision> Decided) {
  for (const Decision &One : Decided)
    if (Function *F = M.getFunction(One.Function); F && !F->isDeclaration())
      return F;
  const auto Found =
      find_if(M, [](const Function &F) { return !F.isDeclaration(); });
  return Found == M.end() ? nullptr : &*Found;
}

/// The last one of \p Decided about each function: what counts is what has
/// become of it.
static SmallVector<Decision, 0> findLast(ArrayRef<Decision> Decided) {
  MapVector<StringRef, Decision> Last;
  for (const Decision &One : Decided)
    Last[One.Function] = One;
  SmallVector<Decision, 0> Result;
  for (const auto &Named : Last)
    Result.push_back(Named.second);
  return Result;
}

static void tellSummary(Module &M, ArrayRef<Decision> Decided) {
  auto Count = [Decided](Outcome What) {
    return unsigned(count_if(
        Decided, [What](const Decision &One) { return One.What == What; }));
  };
  const unsigned Rebuilt = Count(Outcome::Rebuilt);
  const unsigned Functions = Count(Outcome::Left) + Rebuilt;
  uint64_t Growth = 0;
  for (const Decision &One : Decided)
    Growth += One.Growth;
  Function *Place = findPlace(M, Decided);
  if (Functions == 0 || !Place)
    return;
  OptimizationRemarkEmitter ORE(Place);
  OptimizationRemarkAnalysis Remark(PassName.data(), "Summary", Place);
  Remark << NV("Functions", Functions)
         << (Functions == 1 ? " recursive function: "
                            : " recursive functions: ")
         << NV("Rebuilt", Rebuilt) << " rebuilt, "
         << NV("Left", Functions - Rebuilt) << " not; +" << NV("Growth", Growth)
         << (Growth == 1 ? " instruction" : " instructions");
  ORE.emit(Remark);
}

PreservedAnalyses SummaryPass::run(Module &M, ModuleAnalysisManager &) {
  const std::vector<Decision> Decided = readDecisions(M);
  tellSummary(M, findLast(Decided));
  writePlan(M, Decided);
  endDecisions(M);
  endPlans(M);
  // No analysis rests on the metadata and the marks.
  return PreservedAnalyses::all();
}

void SummaryPass::printPipeline(raw_ostream &OS,
                                function_ref<StringRef(StringRef)>) {
  OS << SummaryName;
}
