//===- AutoPass.cpp - What nobody asked for -------------------------------===//

#include "plugin/automatic/AutoPass.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/automatic/GrowthBudget.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Policy.h"
#include "plugin/policy/Preparation.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/rewrite/Build.h"
#include "plugin/tell/Remarks.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Module.h"
#include "llvm/Transforms/Scalar/TailRecursionElimination.h"
#include <deque>
#include <memory>

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

static constexpr StringLiteral NoRoom = "AutoModuleGrowth";

bool llvm::inlinerecursion::isSeenByAuto(const Function &F) {
  return F.hasFnAttribute(SeenMark);
}

void llvm::inlinerecursion::forgetSeen(Module &M) {
  for (Function &F : M)
    F.removeFnAttr(SeenMark);
}

/// What \p M has grown by, more or less, in an earlier run.
static uint64_t findEarlierGrowth(const Module &M) {
  uint64_t Size = 0;
  for (const Function &F : M)
    if (hasCloneMark(F))
      Size += getCodeSize(F);
  return Size;
}

namespace {
/// A function that is asked about.
struct Candidate {
  Function *F;
  /// Empty where they hold no more, as something around the function changed.
  std::unique_ptr<Facts> Known;
  /// What is to be built if the function has the module for itself; made from
  /// Known, and as old.
  std::optional<Plan> Wanted;
  /// What it would grow by then (instructions), as first asked.
  unsigned Demand = 0;
  /// Its share was too small; it gets what the others have left.
  bool IsLastTurn = false;
};

/// One run of the pass on one module.
class AutoRun {
public:
  AutoRun(Module &M, FunctionAnalysisManager &FAM, const Bounds &Limits)
      : M(M), FAM(FAM), Limits(Limits), TellUser(areRemarksEnabled(M)),
        // A level that does not ask for copies to be inlined; that is done
        // here.
        D(FAM, /*Level=*/1, /*LongestRing=*/0) {}

  /// True if the module was changed.
  bool run();

private:
  SmallVector<Function *, 8> collect();
  void addCandidate(Function &F);
  void passSum(Candidate &C);
  void makeLoops(Candidate &C);
  void rethink(Candidate &C);
  void forgetAround(const Function &F);
  Plan planWithin(Candidate &C, uint64_t Share);
  void shareOut();
  void buildPlan(Function &F, const Plan &Granted);

  Module &M;
  FunctionAnalysisManager &FAM;
  const Bounds Limits;
  const bool TellUser;
  Driver D;
  // Candidates are added while others are looked at.
  std::deque<Candidate> Candidates;
  /// What all functions together may grow by.
  uint64_t GrowthLimit = 0;
  bool Changed = false;
};
} // namespace

/// The functions to ask about, each with a body and a call of itself.
SmallVector<Function *, 8> AutoRun::collect() {
  const bool IsSecondLook = !Limits.InlinerFollows;
  SmallVector<Function *, 8> Recursive;
  for (Function &F : M) {
    if (F.isDeclaration() || !isDirectlyRecursive(F) ||
        (IsSecondLook && isSeenByAuto(F)))
      continue;
    if (D.isLegalToInlineRecursion(&F))
      Recursive.push_back(&F);
    if (!IsSecondLook)
      F.addFnAttr(SeenMark);
  }
  return Recursive;
}

/// Makes the plan of \p C anew if anything has changed around it.
void AutoRun::rethink(Candidate &C) {
  if (C.Known)
    return;
  C.Known = std::make_unique<Facts>(*C.F, FAM, Limits.InlinerFollows);
  C.Wanted = makePlan(*C.Known, Limits);
}

/// \p F is about to be changed: what is known of those that it calls, or that
/// call it, does not hold any more.
void AutoRun::forgetAround(const Function &F) {
  SmallPtrSet<Function *, 8> Around = findCallers(F);
  for (const Instruction &I : instructions(F))
    if (const auto *Call = dyn_cast<CallBase>(&I))
      if (Function *Callee = Call->getCalledFunction())
        Around.insert(Callee);
  for (Candidate &C : Candidates)
    if (Around.contains(C.F))
      C.Known.reset();
}

/// Has \p C hand on its sum from self call to self call, if that leads to a
/// better ring.  It is about the function that does so then.
void AutoRun::passSum(Candidate &C) {
  const auto Sum = findSumToPass(*C.Known, Limits, *C.Wanted);
  if (!Sum)
    return;
  forgetAround(*C.F);
  if (TellUser)
    emitRemark(*C.F, accept("AutoSum")
                         << NV("Shape", "passed sum")
                         << " by the automatic policy, handed on from self "
                            "call to self call");
  Function &Passing = passAccumulator(*C.F, *Sum);
  FAM.invalidate(*C.F, PreservedAnalyses::none());
  Changed = true;
  C.F = &Passing;
  C.Known.reset();
  rethink(C);
}

/// Makes loops of the calls of \p C that would become some anyhow, if the rest
/// of it is a better ring then.
void AutoRun::makeLoops(Candidate &C) {
  if (!wantsLoopsFirst(*C.Known, Limits, *C.Wanted))
    return;
  forgetAround(*C.F);
  FAM.invalidate(*C.F, TailCallElimPass().run(*C.F, FAM));
  Changed = true;
  C.Known.reset();
  rethink(C);
}

void AutoRun::addCandidate(Function &F) {
  Candidate C{&F};
  rethink(C);
  passSum(C);
  makeLoops(C);
  C.Demand = C.Wanted->Growth;
  Candidates.push_back(std::move(C));
}

/// The plan for \p C with a growth of at most \p Share; nothing is planned if
/// that is too little.
Plan AutoRun::planWithin(Candidate &C, uint64_t Share) {
  rethink(C);
  if (C.Demand <= Share && C.Wanted->Growth <= Share)
    return *C.Wanted;
  // Fewer copies, if they fit.
  Bounds Rest = Limits;
  Rest.FunctionGrowth = std::min<uint64_t>(Rest.FunctionGrowth, Share);
  Plan Smaller = makePlan(*C.Known, Rest);
  if (Smaller.Kind != Plan::Nothing && Smaller.Growth <= Share)
    return Smaller;
  return Plan(refuse(NoRoom)
              << "a ring of it would add " << NV("Growth", C.Demand)
              << " instructions, and the module may not grow by more than "
              << NV("Limit", GrowthLimit));
}

/// Builds what was \p Granted to \p F.
void AutoRun::buildPlan(Function &F, const Plan &Granted) {
  forgetAround(F);
  const Built Result = build(F, Granted, D);
  for (Function *User : Result.Changed)
    FAM.invalidate(*User, PreservedAnalyses::none());
  Changed = true;
  // A function that is taken apart leaves another one behind.
  if (Result.Rest)
    addCandidate(*Result.Rest);
}

/// Divides the growth of the module among the candidates and builds.
void AutoRun::shareOut() {
  SmallVector<unsigned, 8> Demands;
  for (const Candidate &C : Candidates)
    Demands.push_back(C.Demand);
  const uint64_t Used = Limits.InlinerFollows ? 0 : findEarlierGrowth(M);
  GrowthBudget Budget(GrowthLimit - std::min(GrowthLimit, Used), Demands);

  for (size_t I = 0; I != Candidates.size(); ++I) {
    Candidate &C = Candidates[I];
    const Plan Granted =
        planWithin(C, C.IsLastTurn ? Budget.getLeft() : Budget.getShare());
    Budget.take(C.IsLastTurn ? 0 : C.Demand, Granted.Growth);
    if (Granted.Decision.Name == NoRoom && !C.IsLastTurn) {
      C.IsLastTurn = true;
      Candidates.push_back(std::move(C));
      continue;
    }
    if (TellUser)
      emitRemark(*C.F, Granted.Decision);
    if (Granted.LacksTest)
      C.F->removeFnAttr(SeenMark);
    if (Granted.Kind != Plan::Nothing)
      buildPlan(*C.F, Granted);
  }
}

bool AutoRun::run() {
  const SmallVector<Function *, 8> Recursive = collect();
  if (Recursive.empty())
    return false;
  GrowthLimit = findGrowthLimit(M, Limits);
  for (Function *F : Recursive)
    addCandidate(*F);
  shareOut();
  return Changed;
}

PreservedAnalyses AutoPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  SingleRun Alone;
  if (!AutoRun(M, FAM, Limits).run())
    return PreservedAnalyses::all();
  // Of all other functions the analyses stay.
  PreservedAnalyses PA;
  PA.preserve<FunctionAnalysisManagerModuleProxy>();
  PA.preserveSet<AllAnalysesOn<Function>>();
  return PA;
}

void AutoPass::printPipeline(raw_ostream &OS,
                             function_ref<StringRef(StringRef)>) {
  OS << AutoName << "<" << Limits << ">";
}
