//===- Obstacles.cpp - What keeps a function as it is ---------------------===//

#include "plugin/policy/Obstacles.h"
#include "pass/InlineRecursion.h"
#include "plugin/ir/LinkStep.h"
#include "plugin/ir/Size.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/CopyLimits.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Tuning.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/Unrolling.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/IR/Dominators.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;
using ore::NV;

//===----------------------------------------------------------------------===//
// Nothing is worth building
//===----------------------------------------------------------------------===//

// Copies would hardly run.
static bool isNeverEntered(const Facts &Known, const Bounds &, Verdict &Why) {
  const auto Count = Known.getFunction().getEntryCount();
  if (!Count || Count->getCount() != 0)
    return false;
  Why << "it was never entered, says the profile";
  return true;
}

// It ends the program or runs until somebody else does; nobody waits for it.
static bool neverReturns(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!Known.getFunction().doesNotReturn())
    return false;
  Why << "it never returns";
  return true;
}

// No inliner takes a call of it that hands variable arguments on.
static bool isVariadic(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!Known.getFunction().isVarArg())
    return false;
  Why << "it takes variable arguments, which cannot be handed on";
  return true;
}

// The inliner refuses such callees.
static bool callsSetjmp(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!Known.getFunction().callsFunctionThatReturnsTwice())
    return false;
  Why << "it calls a function that returns twice, and is not inlined";
  return true;
}

// Inlined, each copy has a copy of the object in the one frame.
static bool takesByValue(const Facts &Known, const Bounds &, Verdict &Why) {
  if (none_of(Known.getFunction().args(), [](const Argument &A) {
        return A.hasPassPointeeByValueCopyAttr();
      }))
    return false;
  Why << "an argument is copied to the stack by every call";
  return true;
}

// Tail recursion elimination leaves no call, and needs no stack.
static bool isLoopAnyway(const Facts &Known, const Bounds &, Verdict &Why) {
  if (Known.mergesCalls() ||
      !all_of(Known.getSelfCalls(),
              [](const CallBase *Call) { return becomesLoop(*Call); }))
    return false;
  Why << "its recursion becomes a loop";
  return true;
}

// Copies for states stay functions of their own; all others share a frame.
static bool wouldMultiplyFrame(const Facts &Known, const Bounds &,
                               Verdict &Why) {
  if (!hasLargeFrame(Known.getFunction()))
    return false;
  Why << "its local variables take more stack than "
         "inlinerecursion-max-frame-size allows";
  return true;
}

// Most of many self calls exclude each other.
static bool hasManySelfCalls(const Facts &Known, const Bounds &, Verdict &Why) {
  const unsigned SelfCalls = Known.getSelfCalls().size();
  if (SelfCalls <= MaxSelfCalls)
    return false;
  Why << "it calls itself in " << NV("SelfCalls", SelfCalls)
      << " places, more than " << NV("Limit", MaxSelfCalls);
  return true;
}

// What the depth estimator would not make a chain of is no ring either.
static bool isDeclined(const Facts &Known, const Bounds &, Verdict &Why) {
  const StringRef Reason = Known.getReasonAgainstChain();
  if (Reason.empty())
    return false;
  Why << Reason;
  return true;
}

// The inliner takes large functions in that have one caller; copies are more.
static bool isOnlyCaller(const Facts &Known, const Bounds &, Verdict &Why) {
  const Function *Callee = Known.getOtherCalls().OnlyCallee;
  if (!Callee)
    return false;
  Why << "it is the only caller of '" << NV("Callee", Callee)
      << "', whose inlining is worth more than copies with calls of it";
  return true;
}

/// Does little of the function, which has one argument, fold away where that is
/// a constant?  By level 0's own estimate.
static bool foldsLittle(const Facts &Known) {
  InlineRecursion::InlineRecursionCosting Costing(
      &Known.getFunction(), &Known.getEvolution(), &Known.getDominators(),
      /*OptLevel=*/0);
  Costing.analyzeFunction();
  const auto Estimate = Costing.estimateInlineBenefit();
  return Estimate && Estimate->Benefit * LittleShare < Known.getSize();
}

// Neither a chain nor a ring pays for a deep nest of loops in which constants
// make no difference.
static bool nestsLoops(const Facts &Known, const Bounds &Limits, Verdict &Why) {
  if (!Limits.InlinerFollows)
    return false;
  const std::optional<unsigned> Depth = Known.getDepth();
  if (!Depth || *Depth > Limits.Copies || *Depth <= MaxShortLoops ||
      !foldsLittle(Known) || !Known.anyInShortLoop())
    return false;
  Why << "its short loops would be nested " << NV("Depth", *Depth)
      << " deep, and a constant argument saves too little for that";
  return true;
}

//===----------------------------------------------------------------------===//
// Its calls are not what takes the time
//===----------------------------------------------------------------------===//

bool llvm::inlinerecursion::hasWorkInLoop(const Facts &Known) {
  const LoopInfo &LI = Known.getLoops();
  const DominatorTree &DT = Known.getDominators();
  const ArrayRef<CallBase *> Calls = Known.getSelfCalls();
  const Loop *TailLoop = findTailLoop(Known.getFunction(), LI);
  return any_of(LI.getLoopsInPreorder(), [&](const Loop *L) {
    return L != TailLoop &&
           none_of(Calls, [L](const CallBase *C) { return L->contains(C); }) &&
           any_of(Calls, [&](const CallBase *C) {
             return DT.dominates(L->getHeader(), C->getParent()) ||
                    DT.dominates(C->getParent(), L->getHeader());
           });
  });
}

// A loop without self calls stands in front of one or behind it.
static bool worksInLoop(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!hasWorkInLoop(Known))
    return false;
  Why << "it has a loop of its own beside its self calls";
  return true;
}

// The compiler runs such a path well: it is a loop, by the tail call, as long
// as the call that stands in another loop is not made.  A ring takes the loop
// away.
static bool isPathInLoops(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!Known.isPath() ||
      none_of(Known.getSelfCalls(),
              [](const CallBase *C) { return isTailCall(*C); }) ||
      !Known.anyInLoop())
    return false;
  Why << "a tail call of itself becomes a loop, and where it makes another "
         "self call instead, that is in a loop of its own";
  return true;
}

// Each copy makes them, too.
static bool makesOtherCalls(const Facts &Known, const Bounds &, Verdict &Why) {
  const unsigned Others = Known.getOtherCalls().Count;
  if (Others <= MaxOtherCalls * Known.getSelfCalls().size())
    return false;
  Why << "it makes " << NV("OtherCalls", Others) << " other calls, more than "
      << NV("Limit", MaxOtherCalls) << " for each self call";
  return true;
}

//===----------------------------------------------------------------------===//
// A ring is not worth it
//===----------------------------------------------------------------------===//

/// Is there nothing in front of the calls that close a ring, although equal
/// calls do not merge?
static bool lacksGuard(const Facts &Known) {
  return !Known.mergesCalls() && !Known.getGuard();
}

// Copies would be entered for nothing.  Without a guard, whoever calls has to
// have made a test, so each call needs one of its own, or stands in a loop and
// is not made in every trip.
static bool isUntested(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!lacksGuard(Known))
    return false;
  const LoopInfo &LI = Known.getLoops();
  const DominatorTree &DT = Known.getDominators();
  auto IsTested = [&](const CallBase *Call) {
    const Loop *L = LI.getLoopFor(Call->getParent());
    const BasicBlock *Latch = L ? L->getLoopLatch() : nullptr;
    return !Latch || !DT.dominates(Call->getParent(), Latch);
  };
  if (Known.anyInLoop() ? any_of(Known.getSelfCalls(), IsTested)
                        : areTestedOneByOne(Known.getSelfCalls(), DT,
                                            Known.getPostDominators()))
    return false;
  Why << "no test stands in front of its self calls, neither at its entry "
         "nor at each of them";
  return true;
}

// Such a loop is unrolled, as long as it is small.  Rolled copies of it in each
// other would take that away.
static bool losesUnrolling(const Facts &Known, const Bounds &, Verdict &Why) {
  if (!lacksGuard(Known) ||
      none_of(Known.getSelfCalls(), [&](const CallBase *Call) {
        return isInShortLoop(*Call, Known.getLoops(), Known.getEvolution()) &&
               !isLoopUnrolledInItself(*Call, Known.getLoops(),
                                       Known.getEvolution());
      }))
    return false;
  Why << "the loop around its self call is worth more unrolled";
  return true;
}

// Without a guard, what ends at once has to be cheap.
static bool isLargeAndUntested(const Facts &Known, const Bounds &,
                               Verdict &Why) {
  if (!lacksGuard(Known) || Known.getBodySize() <= MaxUnguardedSize)
    return false;
  Why << "no test stands at its entry, and it has "
      << NV("Instructions", Known.getBodySize()) << " instructions, more than "
      << NV("Limit", MaxUnguardedSize);
  return true;
}

// A call is a small part of what such an activation costs.
static bool isLarge(const Facts &Known, const Bounds &Limits, Verdict &Why) {
  if (Known.getBodySize() <= Limits.BodySize)
    return false;
  Why << "its " << NV("Instructions", Known.getBodySize())
      << " instructions, more than " << NV("Limit", Limits.BodySize)
      << ", take the time, not its self calls";
  return true;
}

/// Which limit keeps a ring from being built that would fit otherwise?  None
/// does where the frame is what is too large.
static StringRef findRaisableLimit(const Facts &Known, const Bounds &Limits) {
  auto FitsInto = [&](unsigned FunctionGrowth) {
    Bounds Larger = Limits;
    Larger.Copies = std::min(Limits.Copies, 2u);
    Larger.FunctionGrowth = FunctionGrowth;
    return fitRing(Known, Larger).Copies != 0;
  };
  if (Known.getPlan())
    return FitsInto(~0u) ? "raise -inlinerecursion-plan-growth" : "";
  if (Limits.FunctionGrowth == getBoundsBelowO3().FunctionGrowth &&
      FitsInto(getDefaultBounds().FunctionGrowth))
    return "compile with -O3";
  return FitsInto(~0u) ? "raise -inlinerecursion-auto-function-growth" : "";
}

// Two copies would already be too many.
static bool isTooLargeForTwo(const Facts &Known, const Bounds &Limits,
                             Verdict &Why) {
  if (fitRing(Known, Limits).Copies != 0)
    return false;
  Why << (getWantedCopies(Known) ? "so many" : "two") << " copies of its "
      << NV("Instructions", Known.getBodySize()) << " instructions and "
      << NV("FrameSize", Known.getFrameSize())
      << " bytes of variables, inlined at "
      << NV("SelfCalls", unsigned(Known.getSelfCalls().size()))
      << " self calls, would take more than "
      << NV("Limit", Limits.FunctionGrowth) << " instructions or "
      << NV("FrameLimit", MaxFusedFrame) << " bytes";
  Why.Remedy = findRaisableLimit(Known, Limits);
  return true;
}

// The linker sees who else calls it.  If all of them begin with constants, it
// makes a chain of what is a ring here, and a copy is not looked at again.  It
// finds the function as it is now, unless the compiler unrolls the loop around
// a self call before: then there are more calls than a ring takes.  What equal
// calls save is no less here.  Leaves do not depend on who calls.
static bool isLeftToLink(const Facts &Known, const Bounds &Limits,
                         Verdict &Why) {
  const Function &F = Known.getFunction();
  if (!Limits.LeavesToLink || F.hasLocalLinkage() ||
      !isLinkToCome(*F.getParent()) || Known.mergesCalls() ||
      Known.anyInShortLoop())
    return false;
  Why << "a ring of it is left to the linker, which sees all calls of it";
  return true;
}

//===----------------------------------------------------------------------===//
// The table
//===----------------------------------------------------------------------===//

static constexpr unsigned WithConstants = OfferChain | OfferStates;
static constexpr unsigned BesideRing = WithConstants | OfferLeaves;
static constexpr unsigned InPlaceOfRing = BesideRing | OfferLeavesAlone;

static constexpr Obstacle Obstacles[] = {
    {"AutoNeverEntered", OfferNothing, false, false, isNeverEntered,
     "profile a run that enters it"},
    {"AutoNeverReturns", OfferNothing, false, false, neverReturns},
    {"AutoVariableArguments", OfferNothing, false, true, isVariadic,
     "take a va_list in place of them"},
    {"AutoReturnsTwice", OfferNothing, false, true, callsSetjmp,
     "call setjmp outside of it"},
    {"AutoByValue", OfferStates, false, true, takesByValue,
     "pass it by pointer"},
    {"AutoLoop", OfferNothing, false, true, isLoopAnyway},
    {"AutoLargeFrame", OfferStates, false, true, wouldMultiplyFrame,
     "keep large variables elsewhere"},
    {"AutoSelfCalls", OfferStates | OfferSplit, false, false, hasManySelfCalls},
    {"AutoDeclined", OfferStates, false, false, isDeclined},
    {"AutoOnlyCaller", OfferStates, false, false, isOnlyCaller},
    {"AutoFoldsLittle", OfferStates, false, false, nestsLoops},
    {"AutoWorkInLoop", WithConstants, false, false, worksInLoop},
    {"AutoPathInLoops", WithConstants, false, false, isPathInLoops},
    {"AutoOtherCalls", WithConstants, false, false, makesOtherCalls},
    {"AutoNoTest", InPlaceOfRing | OfferSplit, true, false, isUntested,
     "test first whether there is anything to do"},
    {"AutoUnrolledLoop", InPlaceOfRing, false, false, losesUnrolling},
    {"AutoNoTest", InPlaceOfRing, true, false, isLargeAndUntested,
     "test first whether there is anything to do"},
    {"AutoLargeBody", BesideRing, false, false, isLarge},
    {"AutoTooLarge", BesideRing, false, true, isTooLargeForTwo},
    {"AutoLeftToLink", BesideRing, false, false, isLeftToLink},
};

ArrayRef<Obstacle> llvm::inlinerecursion::getObstacles() { return Obstacles; }
