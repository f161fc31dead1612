//===- Requests.cpp - Who asks for a ring ---------------------------------===//

#include "plugin/literal/Requests.h"
#include "host/DirectCalls.h"
#include "pass/InlineRecursion.h"
#include "plugin/ir/Driver.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/PassOption.h"
#include "plugin/ir/SingleRun.h"
#include "plugin/legality/Hazards.h"
#include "plugin/legality/RingSize.h"
#include "plugin/literal/RingAlignment.h"
#include "plugin/plan/Planned.h"
#include "plugin/recursion/EqualCalls.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/Unrolling.h"
#include "plugin/tell/Remarks.h"
#include "plugin/tell/Verdict.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<bool> FindRequestsOption(
    "inlinerecursion-find-requests", cl::init(true), cl::Hidden,
    cl::desc("Build rings of copies also for recursive functions that do not "
             "ask for it but would be accepted"));

/// Without constants, the ring of a function with more self calls than this is
/// slower than the function, unless each copy stands for a remainder.
static constexpr unsigned MaxSelfCallsOfOpenRing = 2;

/// What can be asked for.  One copy is no ring; the most is what the automatic
/// policy takes as a limit.
static constexpr unsigned MinRequestedCopies = 2;
static constexpr unsigned MaxRequestedCopies = 1000;

bool llvm::inlinerecursion::isFindingRequestsEnabled() {
  return FindRequestsOption;
}

/// The text of the annotation string that \p C points to; empty if it is
/// something else.
static StringRef getAnnotationText(const Constant *C) {
  const auto *String = dyn_cast<GlobalVariable>(C->stripPointerCasts());
  if (!String || !String->hasInitializer())
    return {};
  const auto *Text = dyn_cast<ConstantDataArray>(String->getInitializer());
  return Text && Text->isCString() ? Text->getAsCString() : StringRef();
}

/// The number of copies that the values of an annotation, \p Values, ask for;
/// none if they are something else than one number that can be granted.
static std::optional<unsigned> getRequestedCopies(const Constant *Values) {
  const auto *Global = dyn_cast<GlobalVariable>(Values->stripPointerCasts());
  if (!Global || !Global->hasInitializer() ||
      !isa<StructType>(Global->getValueType()) ||
      cast<StructType>(Global->getValueType())->getNumElements() != 1)
    return std::nullopt;
  const auto *Count =
      dyn_cast<ConstantInt>(Global->getInitializer()->getAggregateElement(0u));
  if (!Count || Count->getValue().slt(MinRequestedCopies) ||
      Count->getValue().sgt(MaxRequestedCopies))
    return std::nullopt;
  return Count->getZExtValue();
}

/// Marks \p F as one of which copies are wanted, as many as \p Values say.
static void markCopies(Function &F, const Constant *Values) {
  // Copies are not made twice.
  if (F.isDeclaration() || hasCloneMark(F))
    return;
  if (const std::optional<unsigned> Count = getRequestedCopies(Values))
    F.addFnAttr(CopiesMark, utostr(*Count));
  else
    warnAboutCopies(F, refuse("RequestMalformed")
                           << "INLINERECURSION_COPIES takes one integer from "
                           << ore::NV("Least", MinRequestedCopies) << " to "
                           << ore::NV("Most", MaxRequestedCopies));
}

/// Gives \p F the plan that \p Values, those of an annotation, are, unless a
/// file has one for it.
static void markPlan(Function &F, const Constant *Values) {
  if (F.isDeclaration() || hasCloneMark(F) || F.hasFnAttribute(PlanMark))
    return;
  const auto *Global = dyn_cast<GlobalVariable>(Values->stripPointerCasts());
  const Constant *Text = Global && Global->hasInitializer() &&
                                 isa<StructType>(Global->getValueType())
                             ? Global->getInitializer()->getAggregateElement(0u)
                             : nullptr;
  Expected<PlanSpec> Plan =
      PlanSpec::parse(Text ? getAnnotationText(Text) : StringRef());
  if (!Plan)
    return warnAboutMalformedPlan(F, toString(Plan.takeError()));
  beginPlans(*F.getParent());
  setPlan(F, *Plan, /*Origin=*/"", /*IsLate=*/false);
}

/// Follows the annotations that clang records, { value, text, file, line, ... }
/// each.
static void markAnnotated(Module &M) {
  const GlobalVariable *Annotations =
      M.getGlobalVariable("llvm.global.annotations");
  if (!Annotations || !Annotations->hasInitializer())
    return;
  const auto *Entries = dyn_cast<ConstantArray>(Annotations->getInitializer());
  if (!Entries)
    return;

  for (const Use &Operand : Entries->operands()) {
    const auto *Entry = dyn_cast<ConstantStruct>(Operand);
    if (!Entry || Entry->getNumOperands() < 2)
      continue;
    auto *F = dyn_cast<Function>(Entry->getOperand(0)->stripPointerCasts());
    const StringRef Text = getAnnotationText(Entry->getOperand(1));
    if (F && (Text == Request || Text == NoneMark))
      F->addFnAttr(Text);
    if (F && Text == PlanMark)
      markPlan(*F, Entry->getNumOperands() > 4 ? Entry->getOperand(4)
                                               : Entry->getOperand(1));
    if (F && Text == CopiesMark)
      markCopies(*F, Entry->getNumOperands() > 4 ? Entry->getOperand(4)
                                                 : Entry->getOperand(1));
  }
}

/// Would the ring be entered with a constant anywhere?
static bool hasConstantEntry(const Function &F) {
  return anyCallOf(F, [](const CallInst &Call) {
    return !isSelfCall(Call) && any_of(Call.args(), [](const Use &Arg) {
      return isa<Constant>(Arg) && !isa<UndefValue>(Arg);
    });
  });
}

/// Where a loop of few trips stands around a self call, the loop is worth more
/// unrolled, and what the automatic policy makes of it is faster than a ring.
/// Kernel: knight.
static bool isCalledInShortLoop(Function &F, FunctionAnalysisManager &FAM) {
  const auto &LI = FAM.getResult<LoopAnalysis>(F);
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  return any_of(findSelfCalls(F), [&](const CallBase *Call) {
    return isInShortLoop(*Call, LI, SE);
  });
}

/// Would each copy in a ring of \p F, which has at most \p Most, stand for a
/// remainder of its own?
static bool wouldBeAligned(Function &F, unsigned Most) {
  return findAlignment(F, &F, Most).has_value();
}

/// With several self calls, copies that know nothing do not pay: they gain at
/// one start and lose at another (kernel: puzzle9).  And merging calls pays
/// more than knowing a remainder.
static bool profitsAsTree(Function &F, FunctionAnalysisManager &FAM) {
  return wouldBeAligned(F, getPassOption(LongestRingOption)) &&
         !hasEqualCalls(F, findSelfCalls(F), FAM);
}

/// Asks the gate itself about every directly recursive function.
static void markAcceptable(Module &M, FunctionAnalysisManager &FAM) {
  SingleRun Alone;
  Driver Gate(FAM, /*Level=*/0, getPassOption(LongestRingOption));
  for (Function &F : M) {
    if (!Gate.isLegalToInlineRecursion(&F) || F.hasFnAttribute(Request) ||
        F.hasFnAttribute(CopiesMark) || !isDirectlyRecursive(F) ||
        isPlanned(F) || findWish(F))
      continue;
    if (isCalledInShortLoop(F, FAM) ||
        (findSelfCalls(F).size() > 1 && !profitsAsTree(F, FAM)))
      continue;
    F.addFnAttr(Request, FoundRequest);
    if (!Gate.isSpecializeAllowed(&F)) {
      F.removeFnAttr(Request);
      continue;
    }
    // The gate marks what it accepts; that is for the pass to say.
    F.removeFnAttr(EligibleMark);
    if (isTooLargeUnasked(F, getPassOption(DepthOption)))
      F.removeFnAttr(Request);
  }
}

/// Why a ring of \p F, which requests one, is not built; none if it is.
static std::optional<Verdict> judgeRequest(Function &F,
                                           FunctionAnalysisManager &FAM) {
  const SmallVector<CallBase *, 4> SelfCalls = findSelfCalls(F);
  if (any_of(SelfCalls,
             [](const CallBase *Call) { return isAccumulating(*Call); }))
    return refuse("AccumulatingRecursion")
           << "request withdrawn, without a ring the recursion becomes a loop "
              "that needs no stack";
  // What the pass does not grant is built in its place (RefusedRequests.h).
  if (wouldBeAligned(F,
                     std::max(getPassOption(LongestRingOption), MaxRemainders)))
    return std::nullopt;
  if (isCalledInShortLoop(F, FAM))
    return refuse("RequestInShortLoop")
           << "request withdrawn, the loop around its self call is worth more "
              "unrolled";
  if (SelfCalls.size() > MaxSelfCallsOfOpenRing && !hasConstantEntry(F))
    return refuse("RequestWithdrawn", "start it with a constant")
           << "request withdrawn, it calls itself in "
           << ore::NV("SelfCalls", unsigned(SelfCalls.size()))
           << " places, more than " << ore::NV("Limit", MaxSelfCallsOfOpenRing)
           << ", and no constant enters it from outside";
  return std::nullopt;
}

static void withdrawRequests(Module &M, FunctionAnalysisManager &FAM) {
  for (Function &F : M) {
    // Copies carry the request that they were built for.
    if (!F.hasFnAttribute(Request) || F.isDeclaration() || hasCloneMark(F))
      continue;
    std::optional<Verdict> V = judgeRequest(F, FAM);
    if (!V)
      continue;
    warnAboutRequest(F, *V);
    F.removeFnAttr(Request);
    if (areRemarksEnabled(M))
      emitRemark(F, *V);
  }
}

/// Plans say all that is to be done.
static void dropPlannedRequests(Module &M) {
  for (Function &F : M)
    if (isPlanned(F)) {
      F.removeFnAttr(Request);
      F.removeFnAttr(CopiesMark);
    }
}

/// Nobody is there to build what plans say.
static void refuseAllPlans(Module &M) {
  for (Function &F : M) {
    const std::optional<PlanSpec> Plan = getPlan(F);
    if (!Plan || Plan->ByRules || Plan->Kind == PlanSpec::None)
      continue;
    warnAboutPlan(F, refuse("AutoOff") << "the automatic policy is off");
    dropPlan(F);
  }
}

/// Nobody is there to grant copies.
static void refuseAllCopies(Module &M) {
  for (Function &F : M)
    if (F.hasFnAttribute(CopiesMark))
      refuseCopies(F, refuse("AutoOff") << "the automatic policy is off");
}

PreservedAnalyses RequestsPass::run(Module &M, ModuleAnalysisManager &MAM) {
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  markAnnotated(M);
  if (!GrantsCopies && hasPlans(M))
    refuseAllPlans(M);
  if (!GrantsCopies)
    refuseAllCopies(M);
  if (hasPlans(M))
    dropPlannedRequests(M);
  if (FindRequests)
    markAcceptable(M, FAM);
  withdrawRequests(M, FAM);
  // No analysis reads these attributes.
  return PreservedAnalyses::all();
}

void RequestsPass::printPipeline(raw_ostream &OS,
                                 function_ref<StringRef(StringRef)>) {
  OS << RequestsName << "<" << (FindRequests ? "" : "no-") << "find-requests>";
}
