//===- AutoPass.cpp - What nobody asked for -------------------------------===//

#include "plugin/automatic/AutoPass.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/automatic/GrowthBudget.h"
#include "plugin/automatic/Trial.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/legality/Protection.h"
#include "plugin/plan/Planned.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Policy.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/rewrite/Build.h"
#include "plugin/tell/Decisions.h"
#include "plugin/tell/Remarks.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Module.h"
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

/// What the attribute \p Mark of \p F says.
static Verdict readRefusal(const Function &F, StringRef Mark) {
  // The context keeps the text of the mark as long as it lives.
  const auto [Name, Rest] =
      F.getFnAttribute(Mark).getValueAsString().split(' ');
  const auto [Reason, Remedy] = Rest.split('\n');
  return refuse(Name, Remedy) << Reason;
}

void llvm::inlinerecursion::tellUndecided(Module &M) {
  for (Function &F : M) {
    if (!F.hasFnAttribute(UndecidedMark))
      continue;
    Verdict V = readRefusal(F, UndecidedMark);
    V.IsLate = true;
    F.removeFnAttr(UndecidedMark);
    emitRemark(F, V);
  }
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
  Candidate(Function &F, bool IsRest) : F(&F), IsRest(IsRest) {}

  Function *F;
  /// Empty where they hold no more, as something around the function changed.
  std::unique_ptr<Facts> Known;
  /// What is to be built of the function as it is, if it has the module for
  /// itself; made from Known, and as old.
  std::optional<Plan> Wanted;
  /// What it would grow by (instructions), as first asked.
  unsigned Demand = 0;
  /// Is it what a split has left?
  bool IsRest;
  /// Its share was too small; it gets what the others have left.
  bool IsLastTurn = false;

  /// Does its source ask for a number of copies?
  bool isRequested() const { return F->hasFnAttribute(CopiesMark); }

  /// Does its source ask for a ring that cannot be built?
  bool asksForStates() const { return F->hasFnAttribute(RefusedMark); }
};

/// One run of the pass on one module.
class AutoRun {
public:
  AutoRun(Module &M, FunctionAnalysisManager &FAM, const Bounds &Limits,
          bool SecondLookFollows)
      : M(M), FAM(FAM), Limits(Limits), StateGrowthLeft(Limits.StateGrowth),
        SecondLookFollows(SecondLookFollows), TellUser(areRemarksEnabled(M)),
        // A level that does not ask for copies to be inlined; that is done
        // here.
        D(FAM, /*Level=*/1, /*LongestRing=*/0) {}

  /// True if the module was changed.
  bool run();

private:
  SmallVector<Function *, 8> collect();
  bool isRefused(Function &F);
  void markSeen(Function &F) const;
  void adopt(Function &F) const;
  void addCandidate(Function &F, bool IsRest);
  void rethink(Candidate &C);
  void forgetAround(const Function &F);
  Plan planWithin(const Trial &Tried, uint64_t Share) const;
  bool grantPlan(Candidate &C);
  bool grantRequest(Candidate &C);
  bool grantStates(Candidate &C);
  bool takeTurn(Candidate &C, GrowthBudget &Budget);
  void buildPlan(Candidate &C, Function &F, const Plan &Granted);
  void tell(const Candidate &C, const Trial &Tried, Plan &Decided) const;
  void shareOut();

  Module &M;
  FunctionAnalysisManager &FAM;
  const Bounds Limits;
  /// What copies for states may still add.
  unsigned StateGrowthLeft;
  const bool SecondLookFollows;
  const bool TellUser;
  Driver D;
  // Candidates are added while others are looked at.
  std::deque<Candidate> Candidates;
  /// What all functions together may grow by.
  uint64_t GrowthLimit = 0;
  /// What those may still add that the source asks for.
  uint64_t RequestedLeft = 0;
  bool Changed = false;
};
} // namespace

/// Why no copies are made of \p F, which is not legal.
static Verdict explainIllegal(const Function &F) {
  if (const ProtectionReason *Reason = getProtection(F))
    return refuse(Reason->Name, Reason->Remedy) << Reason->Text;
  return refuse("Chained")
         << "the rules of the level have made copies of it already";
}

/// May no copies be made of \p F?  Whoever asks for some is told why.  One that
/// is protected from all others and may have copies for states is so no more:
/// the policy leaves nothing else open (AutoLargeFrame).
bool AutoRun::isRefused(Function &F) {
  if (D.isLegalToInlineRecursion(&F))
    return false;
  // Behind the inliner there are no states.
  if (Limits.InlinerFollows && isLeftToStates(F)) {
    removeProtection(F);
    return false;
  }
  if (F.hasFnAttribute(CopiesMark))
    refuseCopies(F, explainIllegal(F));
  const std::optional<PlanSpec> Plan = getPlan(F);
  if (Plan && Plan->Kind != PlanSpec::None && !Plan->ByRules)
    warnAboutPlan(F, explainIllegal(F));
  // Behind the inliner it may not be there any more.
  if (!Plan && isPlannedLate(F))
    addDecision(F, explainIllegal(F), /*IsPart=*/false);
  // In front of the inliner that is told with what the pass refuses.
  if (Plan && Plan->Kind == PlanSpec::None && !Limits.InlinerFollows) {
    Verdict Why = explainIllegal(F);
    Why.IsLate = true;
    emitRemark(F, Why);
  }
  return true;
}

/// \p F is looked at, and not once more behind the inliner, unless a plan says
/// so: one for \p F, not for what it was built of.
void AutoRun::markSeen(Function &F) const {
  if (Limits.InlinerFollows && isPlannedLate(F))
    F.removeFnAttr(SeenMark);
  else if (Limits.InlinerFollows)
    F.addFnAttr(SeenMark);
}

/// The functions to ask about, each with a body and a call of itself.
SmallVector<Function *, 8> AutoRun::collect() {
  const bool IsSecondLook = !Limits.InlinerFollows;
  releasePlanned(M);
  SmallVector<Function *, 8> Recursive;
  for (Function &F : M) {
    if (F.isDeclaration() || !isDirectlyRecursive(F) ||
        (IsSecondLook && isSeenByAuto(F)))
      continue;
    if (!isRefused(F))
      Recursive.push_back(&F);
    markSeen(F);
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

/// Takes from \p F, which has just been built, the plans of what it was built
/// of.
void AutoRun::adopt(Function &F) const {
  replanPart(F, /*IsLate=*/!Limits.InlinerFollows);
  markSeen(F);
}

void AutoRun::addCandidate(Function &F, bool IsRest) {
  Candidate C(F, IsRest);
  if (IsRest)
    adopt(F);
  // With a plan for later alone it is left until then, as others are.
  if (IsRest && isPlannedLate(F) && !getPlan(F))
    return;
  rethink(C);
  Trial Tried(F, FAM, Limits, *C.Known, *C.Wanted);
  // States have a budget of their own, and what a plan or the source asks for
  // takes nothing from others.
  if (!C.isRequested() && !C.Known->getPlan() &&
      Tried.getPlan().Kind != Plan::States)
    C.Demand = Tried.getPlan().Growth;
  if (Tried.isPrepared()) {
    Tried.takeBack();
    C.Known.reset();
  }
  Candidates.push_back(std::move(C));
}

/// What is built of the subject of \p Tried with a growth of at most \p Share;
/// nothing if that is too little.
Plan AutoRun::planWithin(const Trial &Tried, uint64_t Share) const {
  const Plan &Wanted = Tried.getPlan();
  if (Wanted.Growth <= (Wanted.Kind == Plan::States ? StateGrowthLeft : Share))
    return Wanted;
  // Fewer copies, if they fit.
  Bounds Rest = Limits;
  Rest.FunctionGrowth = std::min<uint64_t>(Rest.FunctionGrowth, Share);
  const bool IsRequested = Tried.getFacts().getRequestedCopies().has_value();
  Rest.RequestedGrowth = std::min<uint64_t>(Rest.RequestedGrowth, Share);
  Rest.StateGrowth = 0;
  Plan Smaller = makePlan(Tried.getFacts(), Rest);
  if (Smaller.Kind != Plan::Nothing && Smaller.Growth <= Share)
    return Smaller;
  if (Wanted.Kind == Plan::States)
    return Plan(refuse(NoRoom, "raise -inlinerecursion-auto-state-growth")
                << "copies for its states would add "
                << NV("Growth", Wanted.Growth)
                << " instructions, and those of a module may not add more than "
                << NV("Limit", Limits.StateGrowth));
  return Plan(refuse(NoRoom, "raise -inlinerecursion-auto-module-growth")
              << "a " << getShapeName(Wanted.Kind) << " of it would add "
              << NV("Growth", Wanted.Growth)
              << " instructions, and the module may not grow by more than "
              << NV("Limit", IsRequested ? uint64_t(Limits.RequestedGrowth)
                                         : GrowthLimit));
}

/// What \p Granted for what \p Tried has made of a function is in the language
/// of plans.
static PlanSpec describe(const Plan &Granted, const Trial &Tried) {
  PlanSpec Spec = inlinerecursion::describe(Granted);
  // Constants leave nothing to prepare.
  if (Granted.Kind != Plan::Chain && Granted.Kind != Plan::States) {
    Spec.PassSum = Tried.passesSum();
    Spec.LoopFirst = Tried.madeLoops();
  }
  return Spec;
}

/// Tells the user what was decided about \p C.
void AutoRun::tell(const Candidate &C, const Trial &Tried,
                   Plan &Decided) const {
  if (!TellUser)
    return;
  Decided.Decision.IsLate = !Limits.InlinerFollows;
  // Of what a split has left, which nobody has written, only news are told.
  if (C.IsRest && Decided.Kind == Plan::Nothing)
    return addDecision(*C.F, Decided.Decision, /*IsPart=*/true);
  if (SecondLookFollows && Decided.MayGoAway) {
    const Verdict &V = Decided.Decision;
    C.F->addFnAttr(UndecidedMark,
                   (V.Name + " " + V.str() + "\n" + V.Remedy).str());
    return;
  }
  C.F->removeFnAttr(UndecidedMark);
  if (Decided.Kind != Plan::Nothing && Tried.passesSum())
    Decided.Decision << ", handing its sum on from self call to self call";
  if (Decided.Kind != Plan::Nothing && Tried.getFacts().getPlan())
    Decided.Decision << ", as planned";
  Decided.Decision.Growth = Decided.Growth;
  if (Decided.Kind != Plan::Nothing)
    Decided.Decision.Plan = describe(Decided, Tried).str();
  emitRemark(*C.F, Decided.Decision, /*IsPart=*/C.IsRest);
  // As asked about the function that the user has written.
  if (Decided.Kind != Plan::Nothing && C.Wanted->NoStates)
    emitNoStates(*C.F, *C.Wanted->NoStates);
}

/// Builds what was \p Granted for \p F, which \p C is or has become.
void AutoRun::buildPlan(Candidate &C, Function &F, const Plan &Granted) {
  forgetAround(*C.F);
  forgetAround(F);
  const Built Result = build(F, Granted, D);
  for (Function *User : Result.Changed)
    FAM.invalidate(*User, PreservedAnalyses::none());
  Changed = true;
  // A function that is taken apart leaves another one behind.
  if (Result.Rest)
    addCandidate(*Result.Rest, /*IsRest=*/true);
  for (Function *Copy : Result.Copies)
    addCandidate(*Copy, /*IsRest=*/true);
  for (Function *Copy : Result.OtherCopies)
    adopt(*Copy);
}

/// What the plan that \p Tried was made by wants to have prepared and \p Tried
/// has not; empty if there is no such thing.
static StringRef findUnprepared(const Trial &Tried, const PlanSpec &Spec) {
  if (Spec.PassSum.value_or(false) && !Tried.passesSum())
    return "it adds up no results that could be handed on";
  if (Spec.LoopFirst.value_or(false) && !Tried.madeLoops())
    return "none of its self calls, or each of them, becomes a loop";
  return "";
}

/// Builds what the plan of \p C says.  False if that is refused, and the
/// function is one like others.
bool AutoRun::grantPlan(Candidate &C) {
  rethink(C);
  const PlanSpec Spec = *C.Known->getPlan();
  Trial Tried(*C.F, FAM, Limits, *C.Known, *C.Wanted);
  Plan Granted = Tried.getPlan();
  if (const StringRef Missing = findUnprepared(Tried, Spec); !Missing.empty())
    Granted = Plan(refuse("NotPossible") << Missing);
  const bool IsRefused =
      Granted.Kind == Plan::Nothing && Spec.Kind != PlanSpec::None;
  if (Granted.Kind != Plan::Nothing) {
    tell(C, Tried, Granted);
    // Copies have no plan.
    dropPlan(*C.F);
    dropPlan(Tried.getSubject());
    Tried.keep();
    buildPlan(C, Tried.getSubject(), Granted);
    return true;
  }
  if (Tried.isPrepared())
    Tried.takeBack();
  if (IsRefused)
    warnAboutPlan(*C.F, Granted.Decision);
  else
    tell(C, Tried, Granted);
  dropPlan(*C.F);
  C.Known.reset();
  return !IsRefused;
}

/// Builds the copies that the source of \p C asks for.  False if they are
/// refused, and the function is one like others.
bool AutoRun::grantRequest(Candidate &C) {
  rethink(C);
  Trial Tried(*C.F, FAM, Limits, *C.Known, *C.Wanted);
  Plan Granted = planWithin(Tried, RequestedLeft);
  if (Granted.Kind == Plan::Nothing) {
    if (Tried.isPrepared())
      Tried.takeBack();
    refuseCopies(*C.F, Granted.Decision);
    C.Known.reset();
    return false;
  }
  tell(C, Tried, Granted);
  RequestedLeft -= Granted.Growth;
  // Copies ask for nothing.
  C.F->removeFnAttr(CopiesMark);
  Tried.getSubject().removeFnAttr(CopiesMark);
  Tried.keep();
  buildPlan(C, Tried.getSubject(), Granted);
  return true;
}

/// Builds a copy for each state of \p C, whose source asks for a ring that
/// cannot be built.  False if that is not possible either; the user is warned,
/// and the function is one like others.
bool AutoRun::grantStates(Candidate &C) {
  rethink(C);
  const Verdict NoRing = readRefusal(*C.F, RefusedMark);
  C.F->removeFnAttr(RefusedMark);
  if (C.Wanted->Kind != Plan::States || C.Wanted->Growth > RequestedLeft) {
    warnAboutRequest(*C.F, NoRing);
    C.Known.reset();
    return false;
  }
  RequestedLeft -= C.Wanted->Growth;
  Trial Tried(*C.F, FAM, Limits, *C.Known, *C.Wanted);
  Plan Granted = *C.Wanted;
  tell(C, Tried, Granted);
  buildPlan(C, *C.F, Granted);
  return true;
}

/// Decides about \p C and builds what fits.  False if its share is too little,
/// and another turn may bring more.
bool AutoRun::takeTurn(Candidate &C, GrowthBudget &Budget) {
  if (getPlan(*C.F) && grantPlan(C))
    return true;
  if (C.isRequested())
    return grantRequest(C);
  if (C.asksForStates() && grantStates(C))
    return true;
  rethink(C);
  Trial Tried(*C.F, FAM, Limits, *C.Known, *C.Wanted);
  Plan Granted =
      planWithin(Tried, C.IsLastTurn ? Budget.getLeft() : Budget.getShare());
  const bool AreStates = Granted.Kind == Plan::States;
  Budget.take(C.IsLastTurn ? 0 : C.Demand, AreStates ? 0 : Granted.Growth);
  if (AreStates)
    StateGrowthLeft -= Granted.Growth;
  const bool IsDone = Granted.Decision.Name != NoRoom || C.IsLastTurn;
  if (IsDone)
    tell(C, Tried, Granted);
  if (Granted.MayGoAway)
    C.F->removeFnAttr(SeenMark);
  if (Granted.Kind != Plan::Nothing) {
    Tried.keep();
    buildPlan(C, Tried.getSubject(), Granted);
  } else if (Tried.isPrepared()) {
    Tried.takeBack();
    C.Known.reset();
  }
  return IsDone;
}

/// Divides the growth of the module among the candidates.
void AutoRun::shareOut() {
  SmallVector<unsigned, 8> Demands;
  for (const Candidate &C : Candidates)
    Demands.push_back(C.Demand);
  const uint64_t Used = Limits.InlinerFollows ? 0 : findEarlierGrowth(M);
  RequestedLeft =
      Limits.RequestedGrowth - std::min<uint64_t>(Limits.RequestedGrowth, Used);
  GrowthBudget Budget(GrowthLimit - std::min(GrowthLimit, Used), Demands);

  for (size_t I = 0; I != Candidates.size(); ++I)
    if (!takeTurn(Candidates[I], Budget)) {
      Candidates[I].IsLastTurn = true;
      Candidates.push_back(std::move(Candidates[I]));
    }
}

bool AutoRun::run() {
  const SmallVector<Function *, 8> Recursive = collect();
  if (Recursive.empty())
    return false;
  GrowthLimit = findGrowthLimit(M, Limits);
  for (Function *F : Recursive)
    addCandidate(*F, /*IsRest=*/false);
  shareOut();
  return Changed;
}

PreservedAnalyses AutoPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  SingleRun Alone;
  if (!AutoRun(M, FAM, Limits, SecondLookFollows).run())
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
