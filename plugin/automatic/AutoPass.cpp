//===- Auto.cpp - Rings that nobody asked for -----------------------------===//

#include "plugin/automatic/AutoPass.h"
#include "host/InliningPlan.h"
#include "pass/InlineRecursion.h"
#include "plugin/automatic/GrowthBudget.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/ForwardingCall.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/PassOption.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/policy/Policy.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Remarks.h"
#include "plugin/tell/Verdict.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/ScopeExit.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Transforms/Scalar/TailRecursionElimination.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

static cl::opt<bool> AutoOption(
    "inlinerecursion-auto", cl::init(true), cl::Hidden,
    cl::desc("Build rings of copies also for recursive functions that the "
             "pass refuses, where that pays"));

static cl::opt<unsigned>
    MaxCopies("inlinerecursion-auto-copies", cl::init(9), cl::Hidden,
              cl::desc("Most copies in a ring that nobody asked for (copies)"));

static cl::opt<unsigned> MaxFunctionGrowth(
    "inlinerecursion-auto-function-growth", cl::init(900), cl::Hidden,
    cl::desc("Most code that such a ring adds for one function "
             "(instructions)"));

static cl::opt<unsigned> MaxModuleGrowth(
    "inlinerecursion-auto-module-growth", cl::init(1500), cl::Hidden,
    cl::desc("Most code that such rings add to a module, if its share of the "
             "module is not larger (instructions)"));

static cl::opt<unsigned> ModuleShare(
    "inlinerecursion-auto-module-share", cl::init(1), cl::Hidden,
    cl::desc("Most code that such rings add to a large module (percent of its "
             "instructions)"));

static constexpr StringLiteral NoRoom = "AutoModuleGrowth";

bool llvm::inlinerecursion::isAutoEnabled() { return AutoOption; }

bool llvm::inlinerecursion::isSeenByAuto(const Function &F) {
  return F.hasFnAttribute(SeenMark);
}

void llvm::inlinerecursion::forgetSeen(Module &M) {
  for (Function &F : M)
    F.removeFnAttr(SeenMark);
}

AutoLimits::AutoLimits()
    : Copies(MaxCopies), FunctionGrowth(MaxFunctionGrowth),
      ModuleGrowth(MaxModuleGrowth) {}

/// Lets the calls of \p From in \p Caller call \p To, which has its type.
static void redirectCalls(Function &From, Function &To,
                          const Function &Caller) {
  redirectCalls(From, To, [&Caller](const CallBase &Call) {
    return Call.getFunction() == &Caller;
  });
}

/// Links copy \p K of \p Copies, which are copies of \p F.  What leads behind
/// the last one enters the ring anew, by \p Entry.
static void linkCopy(Function &F, ArrayRef<Function *> Copies, size_t K,
                     bool Staggered, Function &Entry) {
  Function &Linked = K + 1 == Copies.size() ? *Copies.front() : *Copies[K + 1];
  redirectCalls(F, Linked, *Copies[K]);
  for (auto [I, Call] : enumerate(findCalls(*Copies[K], Linked))) {
    const size_t To = K + 1 + (Staggered && I > 0);
    Call->setCalledFunction(To < Copies.size() ? Copies[To] : &Entry);
  }
}

/// Whether the processor keeps up with a function that others are merged into
/// depends on which of its branches share a cache line.  With an alignment of
/// 16 bytes, that depends on what stands in front of it in the module: the same
/// search for subsets ran in 0.7 or in all of plain clang's time.
static constexpr uint64_t MergedAlignment = 64;

static void setInlined(Function &F, bool Inlined) {
  F.removeFnAttr(Inlined ? Attribute::NoInline : Attribute::AlwaysInline);
  F.addFnAttr(Inlined ? Attribute::AlwaysInline : Attribute::NoInline);
  if (!Inlined)
    F.setAlignment(std::max(F.getAlign().valueOrOne(), Align(MergedAlignment)));
}

/// Builds the ring that \p Plan says of \p F, which \p Callers call.
static void buildRing(Function &F, const RecursionPlan &Plan, Driver &D,
                      const SmallPtrSetImpl<Function *> &Callers) {
  const SmallVector<Function *, 4> Copies =
      D.buildCopies(F, Plan.Copies, /*AsRing=*/true);
  Function &Head = *Copies.front();
  Function &Entry = Plan.Guard ? buildGuard(F, *Plan.Guard, Head) : Head;
  for (size_t K = 0; K != Copies.size(); ++K)
    linkCopy(F, Copies, K, Plan.Staggered, Entry);

  for (Function *Copy : Copies)
    setInlined(*Copy, Copy != &Head);
  if (!Plan.Guard) {
    redirectCalls(F, Head, F);
    return;
  }

  // What is left of the function is for the inliner to judge, so those who
  // call from outside call it again.
  for (Function *Caller : Callers)
    redirectCalls(Head, F, *Caller);
  removeGuard(Head, F, *Plan.Guard);
  reduceToGuard(F, *Plan.Guard, Head);
  setInlined(Entry, true);
}

/// Builds the leaves that \p Plan says of \p F, which \p Callers call.
static void buildLeaves(Function &F, const RecursionPlan &Plan, Driver &D,
                        const SmallPtrSetImpl<Function *> &Callers) {
  const SmallVector<Function *, 4> Copies =
      D.buildCopies(F, Plan.Copies, /*AsRing=*/false);
  // Nobody but the function itself enters them.
  for (Function *Caller : Callers)
    redirectCalls(*Copies.front(), F, *Caller);

  const RecursionCounter &Counter = *Plan.Counter;
  for (auto [K, Copy] : enumerate(Copies)) {
    // The driver has linked plain calls.
    if (K + 1 != Copies.size())
      redirectCalls(F, *Copies[K + 1], *Copy);
    fixCounter(*Copy, Counter, Copies.size() - 1 - K);
    setInlined(*Copy, K != 0);
  }
  SmallVector<std::pair<ConstantInt *, Function *>, 2> Entries;
  for (unsigned Levels : Plan.EntryLevels)
    Entries.emplace_back(Counter.Values[Levels],
                         Copies[Copies.size() - 1 - Levels]);
  enterLeaves(F, *Counter.Counter, Entries);
}

/// Builds what \p Plan says of \p F.  Returns the functions that were there
/// before and call something else now.
static SmallPtrSet<Function *, 8> build(Function &F, const RecursionPlan &Plan,
                                        Driver &D) {
  // The driver leads plain calls from outside to the first copy.
  SmallPtrSet<Function *, 8> Callers = {&F};
  for (User *U : F.users())
    if (auto *Call = dyn_cast<CallBase>(U))
      Callers.insert(Call->getFunction());
  switch (Plan.Kind) {
  case RecursionPlan::Nothing:
  case RecursionPlan::Split:
    break;
  case RecursionPlan::Chain:
    for (Function *Copy : D.buildCopies(F, Plan.Copies, /*AsRing=*/false))
      setInlined(*Copy, true);
    break;
  case RecursionPlan::Leaves:
    buildLeaves(F, Plan, D, Callers);
    break;
  case RecursionPlan::Ring:
    buildRing(F, Plan, D, Callers);
    break;
  }
  return Callers;
}

/// What \p M may grow by: \p Least, or its share of \p M if that is larger.
static uint64_t findGrowthLimit(const Module &M, unsigned Least) {
  uint64_t Size = 0;
  for (const Function &F : M)
    Size += getCodeSize(F);
  return std::max<uint64_t>(Least, Size * ModuleShare / 100);
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
  /// What it would grow by if it had the module for itself (instructions).
  unsigned Demand;
  /// Its share was too small; it gets what the others have left.
  bool IsLast = false;
};
} // namespace

/// Has \p F hand on its sum, or become a loop, as far as a plan is to be made
/// for what is left then.  Returns the function that it is to be made for.
static Function &prepare(Function &Candidate, FunctionAnalysisManager &FAM,
                         const AutoBounds &Bounds, bool &Changed) {
  Function *F = &Candidate;
  if (auto Sum = AutoPolicy(*F, FAM).findSumToPass(Bounds)) {
    if (areRemarksEnabled(*F->getParent()))
      emitRemark(*F, Verdict(true, "AutoSum")
                         << NV("Shape", "passed sum")
                         << " by the automatic policy, handed on from self "
                            "call to self call");
    Function &Passing = passAccumulator(*F, *Sum);
    FAM.invalidate(*F, PreservedAnalyses::none());
    F = &Passing;
    Changed = true;
  }
  if (AutoPolicy(*F, FAM).wantsLoopsFirst(Bounds)) {
    FAM.invalidate(*F, TailCallElimPass().run(*F, FAM));
    Changed = true;
  }
  return *F;
}

/// The plan for a function with a growth of at most \p Share; nothing is
/// planned if that is too little.  All functions together may grow by \p Limit.
static RecursionPlan planWithin(const Candidate &Asked,
                                FunctionAnalysisManager &FAM,
                                const AutoBounds &Bounds, uint64_t Share,
                                uint64_t Limit) {
  AutoPolicy Policy(*Asked.F, FAM);
  if (Asked.Demand <= Share) {
    RecursionPlan Plan = Policy.makePlan(Bounds);
    if (Plan.Growth <= Share)
      return Plan;
  }
  // Fewer copies, if they fit.
  AutoBounds Rest = Bounds;
  Rest.FunctionGrowth = std::min<uint64_t>(Rest.FunctionGrowth, Share);
  RecursionPlan Smaller = Policy.makePlan(Rest);
  if (Smaller.Kind != RecursionPlan::Nothing && Smaller.Growth <= Share)
    return Smaller;
  Verdict Refusal(false, NoRoom);
  Refusal << "a ring of it would add " << NV("Growth", Asked.Demand)
          << " instructions, and the module may not grow by more than "
          << NV("Limit", Limit);
  return RecursionPlan(Refusal);
}

PreservedAnalyses AutoPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  SingleRun Alone;
  // A level that does not ask for copies to be inlined; that is done here.
  Driver D(FAM, /*Level=*/1, /*LongestRing=*/0);

  SmallVector<Function *, 8> Recursive;
  for (Function &F : M) {
    if (F.isDeclaration() || !isDirectlyRecursive(F))
      continue;
    if (Where == BehindInliner && isSeenByAuto(F))
      continue;
    if (D.isLegalToInlineRecursion(&F))
      Recursive.push_back(&F);
    if (Where == BeforeInliner)
      F.addFnAttr(SeenMark);
  }
  if (Recursive.empty())
    return PreservedAnalyses::all();

  const AutoBounds Bounds = {Limits.Copies, Limits.FunctionGrowth,
                             /*InlinerFollows=*/Where == BeforeInliner};
  bool Changed = false;
  SmallVector<Candidate, 8> Candidates;
  SmallVector<unsigned, 8> Demands;
  auto AddCandidate = [&](Function &F) {
    Function &Prepared = prepare(F, FAM, Bounds, Changed);
    Demands.push_back(AutoPolicy(Prepared, FAM).makePlan(Bounds).Growth);
    Candidates.push_back({&Prepared, Demands.back()});
  };
  const uint64_t Limit = findGrowthLimit(M, Limits.ModuleGrowth);
  const uint64_t Used = Where == BehindInliner ? findEarlierGrowth(M) : 0;
  for (Function *F : Recursive)
    AddCandidate(*F);
  GrowthBudget Budget(Limit - std::min(Limit, Used), Demands);

  const bool TellUser = areRemarksEnabled(M);
  // A function that is taken apart leaves another one behind.
  for (size_t I = 0; I != Candidates.size(); ++I) {
    const Candidate Asked = Candidates[I];
    Function &F = *Asked.F;
    const RecursionPlan Plan =
        planWithin(Asked, FAM, Bounds,
                   Asked.IsLast ? Budget.getLeft() : Budget.getShare(), Limit);
    Budget.take(Asked.IsLast ? 0 : Asked.Demand, Plan.Growth);
    if (Plan.Decision.Name == NoRoom && !Asked.IsLast) {
      Candidates.push_back({&F, Asked.Demand, /*IsLast=*/true});
      continue;
    }
    if (TellUser)
      emitRemark(F, Plan.Decision);
    if (Plan.LacksTest)
      F.removeFnAttr(SeenMark);
    if (Plan.Kind == RecursionPlan::Nothing)
      continue;
    Function *Rest = nullptr;
    if (Plan.Kind == RecursionPlan::Split)
      Rest = &splitEntry(F, *Plan.Where);
    for (Function *User : build(F, Plan, D))
      FAM.invalidate(*User, PreservedAnalyses::none());
    if (Rest)
      AddCandidate(*Rest);
    Changed = true;
  }
  if (!Changed)
    return PreservedAnalyses::all();
  // Of all other functions the analyses stay.
  PreservedAnalyses PA;
  PA.preserve<FunctionAnalysisManagerModuleProxy>();
  PA.preserveSet<AllAnalysesOn<Function>>();
  return PA;
}

raw_ostream &llvm::inlinerecursion::operator<<(raw_ostream &OS,
                                               const AutoLimits &Limits) {
  return OS << "copies=" << Limits.Copies
            << ";function-growth=" << Limits.FunctionGrowth
            << ";module-growth=" << Limits.ModuleGrowth;
}

void AutoPass::printPipeline(raw_ostream &OS,
                             function_ref<StringRef(StringRef)>) {
  OS << AutoName << "<" << Limits << ">";
}
