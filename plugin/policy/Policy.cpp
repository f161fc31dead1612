//===- AutoPolicy.cpp - What pays without being asked ---------------------===//

#include "plugin/policy/Policy.h"
#include "host/InliningPlan.h"
#include "host/RecursionDepthEstimator.h"
#include "pass/InlineRecursion.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/Protection.h"
#include "plugin/loops/LoopHints.h"
#include "plugin/recursion/EqualCalls.h"
#include "plugin/recursion/OtherCalls.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Verdict.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

/// A guard that is larger than this is no better than the call that it saves.
static constexpr unsigned MaxGuardSize = 30;

/// Without a guard, the activations that end at once have to be cheap.  Between
/// a parser of 49 instructions, which gains, and a puzzle of 73, which does
/// not.
static constexpr unsigned MaxUnguardedSize = 60;

/// With more self calls than this, most of them exclude each other (the cases
/// of a switch), and copies of all of them only spread the branches.
static constexpr unsigned MaxSelfCalls = 4;

/// And what they do beside their calls has to be little, so that leaves are a
/// large part of it (instructions for each self call).
static constexpr unsigned MaxSizePerCall = 15;

/// Local variables of all bodies that share a frame (bytes).
static constexpr uint64_t MaxFusedFrame = 1024;

/// With one self call, five copies save four calls of five, and with two, they
/// are twelve bodies.  More made no program of ours faster by more than a few
/// percent; walks over binary trees ran as fast with 33 bodies, or slower.
static constexpr unsigned MaxCopiesOfFewCalls = 5;

/// In a larger body, a call is a small part of what an activation costs.  Of
/// the kernels none that gains has more than 60; a walk over a tree that mixes
/// 74 into a sum gained 9 percent for four times its code.
static constexpr unsigned MaxRingBodySize = 80;

/// Equal calls in two copies merge.  In three, there are tests between them.
static constexpr unsigned MaxCopiesToMerge = 2;

/// Where no activation makes more than one of several calls, the recursion is a
/// path, and of all that copies are multiplied by only that path is run.
/// Merging two lists runs 1.25 times as fast as plain with four copies, 1.1
/// times with two, and no faster with more.  With a loop around one of the
/// calls, two are best: a matcher of patterns is 2.6 times as fast with them,
/// 2.2 times with three and 1.4 times with four.
static constexpr unsigned MaxCopiesOfPath = 4;
static constexpr unsigned MaxCopiesOfPathWithLoop = 2;

/// A copy that is inlined into the loop around the one self call is a loop in a
/// loop, and each needs registers.  A path search ran in 0.42 of plain clang's
/// time with two copies, in 0.48 with three, and in 0.61 with four.
/// One more where there are several self calls.
static constexpr unsigned MaxCopiesInLoop = 3;

/// A short loop of constant trip count is gone in each copy, so that a third
/// one would be unrolled in every trip of every trip.  A count of knight's
/// tours, eight moves at every square, runs 1.2 times as fast as plain with
/// two.
static constexpr unsigned MaxCopiesInUnrolledLoop = 2;

/// Another matter is the loop that a tail call has become.  It takes nothing
/// but registers to keep it going, and as long as those are few, copies of it
/// pay: Ackermann's function, which carries two values, is 2.9 times as fast as
/// plain with three copies, 4.9 times with five and 7.5 times with nine.  With
/// three values and one call, a walk through an n-ary tree rises from 1.15 with
/// three copies to 1.35 with nine, one through a code tree from 1.1 to 1.3, a
/// binomial from 2.3 to 3.0.
static constexpr unsigned MaxCopiesInTailLoop = 9;
static constexpr unsigned MaxValuesInTailLoop = 2;
static constexpr unsigned MaxValuesAtOneCall = 3;

/// Most values that all copies of a loop with one call keep together while the
/// innermost one runs; there are not many more registers.  A search for
/// subsets, which keeps an index and a rest, runs 1.15 to 1.55 times as fast as
/// plain with five copies, and 1.03 to 1.65 times with nine.
static constexpr unsigned MaxKeptValues = 10;

/// More arguments that change at calls than this take all registers in a tree
/// of bodies.
static constexpr unsigned MaxSteppedInTree = 2;

/// More short loops in each other pay only if constants save more than this
/// part of their code, as a divisor.  At eight, searches for an assignment and
/// for queens, which save less, took 1.1 of plain clang's time as chains and
/// rings; others, which save a third and more, a third of it and less.
static constexpr unsigned MaxShortLoops = 7;
static constexpr unsigned LittleShare = 4;

/// A call of another function that stays one takes its time in each copy.
/// Building a binary tree and giving it back, node by node, ran as fast with
/// three copies as with five.  What is called through a pointer may be nothing.
static constexpr unsigned MaxCopiesBesideCalls = 3;

/// With more other calls for each self call, the time goes into those.
static constexpr unsigned MaxOtherCalls = 1;

/// Fewer levels of leaves are not worth a test of their own.
static constexpr unsigned MinLeafLevels = 2;

static constexpr StringLiteral NoTest = "AutoNoTest";

static Verdict refuse(StringRef Name) { return Verdict(false, Name); }

//===----------------------------------------------------------------------===//
// What the self calls look like
//===----------------------------------------------------------------------===//

static bool hasVariablesInMemory(const Function &F) {
  return any_of(instructions(F),
                [](const Instruction &I) { return isa<AllocaInst>(I); });
}

//===----------------------------------------------------------------------===//
// The plan
//===----------------------------------------------------------------------===//

namespace {
/// Bodies and instructions in a fused function.
struct FusedSize {
  uint64_t Bodies = 0;
  uint64_t Instructions = 0;
};
} // namespace

/// The size of the first of \p Copies copies of a body with \p SelfCalls self
/// calls, once the others are inlined into it.
static FusedSize estimateFusedSize(unsigned BodySize, unsigned SelfCalls,
                                   unsigned GuardSize, unsigned Copies,
                                   bool Staggered) {
  // Of what a call of copy K becomes, K = Copies and behind being the guard.
  SmallVector<FusedSize, 8> Sizes(Copies + 2, {0, GuardSize});
  for (unsigned K = Copies; K-- != 0;) {
    Sizes[K] = {1, BodySize};
    for (unsigned Call = 0; Call != SelfCalls; ++Call) {
      const FusedSize &Callee = Sizes[K + 1 + (Staggered && Call > 0)];
      Sizes[K].Bodies += Callee.Bodies;
      Sizes[K].Instructions += Callee.Instructions;
    }
  }
  return Sizes.front();
}

/// What is not worth it, what the inliner refuses, and what it multiplies at
/// the wrong place.
static std::optional<Verdict> findObstacle(const Function &F) {
  if (const auto Count = F.getEntryCount(); Count && Count->getCount() == 0)
    return refuse("AutoNeverEntered")
           << "it was never entered, says the profile";
  if (F.doesNotReturn())
    return refuse("AutoNeverReturns") << "it never returns";
  if (F.isVarArg())
    return refuse("AutoVariableArguments")
           << "it takes variable arguments, which cannot be handed on";
  if (F.callsFunctionThatReturnsTwice())
    return refuse("AutoReturnsTwice")
           << "it calls a function that returns twice, and is not inlined";
  if (any_of(F.args(), [](const Argument &A) {
        return A.hasPassPointeeByValueCopyAttr();
      }))
    return refuse("AutoByValue")
           << "an argument is copied to the stack by every call";
  return std::nullopt;
}

/// Is \p A needed in \p L for more than to begin with?
static bool isUsedInLoop(const Argument &A, const Loop &L) {
  return any_of(A.users(), [&L](const User *U) {
    const auto *I = cast<Instruction>(U);
    const auto *Phi = dyn_cast<PHINode>(I);
    return L.contains(I) && (!Phi || Phi->getParent() != L.getHeader());
  });
}

/// The values of \p F that every copy of \p L has its own of.
static unsigned countCarriedValues(const Function &F, const Loop &L) {
  const auto Phis = L.getHeader()->phis();
  return std::distance(Phis.begin(), Phis.end()) +
         count_if(F.args(),
                  [&L](const Argument &A) { return isUsedInLoop(A, L); });
}

/// The values that a copy of \p L, the loop that \p F is, keeps while the one
/// inside it runs, which \p Call becomes.
static unsigned countKeptValues(Function &F, const Loop &L, CallBase &Call,
                                ScalarEvolution &SE) {
  // A sum, for one, goes in and comes back, or the call is not made.
  auto IsReplaced = [&](const PHINode &Phi) {
    return any_of(Phi.incoming_values(), [&](const Value *V) {
      const auto *Merged = dyn_cast<PHINode>(V);
      return V == &Call || (Merged && Merged->getParent() != L.getHeader() &&
                            is_contained(Merged->incoming_values(), &Call));
    });
  };
  // What differs by a constant from copy to copy, or not at all, is kept once.
  auto IsShared = [&](Argument &A) {
    Value *Next = Call.getArgOperand(A.getArgNo());
    return Next == &A || (SE.isSCEVable(A.getType()) &&
                          isa<SCEVConstant>(SE.getMinusSCEV(SE.getSCEV(Next),
                                                            SE.getSCEV(&A))));
  };
  return count_if(L.getHeader()->phis(),
                  [&](const PHINode &Phi) { return !IsReplaced(Phi); }) +
         count_if(F.args(), [&](Argument &A) {
           return isUsedInLoop(A, L) && !IsShared(A);
         });
}

/// Are \p Calls in a loop that all of the function is, that goes on from an
/// argument, and that carries few values?
static bool areInSmallTailLoop(ArrayRef<CallBase *> Calls, const Function &F,
                               const LoopInfo &LI, ScalarEvolution &SE) {
  const Loop *L = findTailLoop(F, LI);
  auto BeginsWithArgument = [&F](const PHINode &Phi) {
    return isa<Argument>(Phi.getIncomingValueForBlock(&F.getEntryBlock()));
  };
  const unsigned MaxValues =
      Calls.size() == 1 ? MaxValuesAtOneCall : MaxValuesInTailLoop;
  return L && any_of(L->getHeader()->phis(), BeginsWithArgument) &&
         countCarriedValues(F, *L) <= MaxValues &&
         all_of(Calls, [&](const CallBase *Call) {
           return LI.getLoopFor(Call->getParent()) == L &&
                  !isInShortLoop(*Call, LI, SE);
         });
}

/// Why calls are not what \p F spends its time on: a loop without any stands in
/// front of one or behind it.  What a leaf does in a loop is another matter,
/// and so is the loop that a self call of its own has become: a comparison of
/// two strings recurses twice where they differ and goes on where they do not.
static std::optional<Verdict> findOtherWork(const Function &F,
                                            ArrayRef<CallBase *> Calls,
                                            const LoopInfo &LI,
                                            const DominatorTree &DT) {
  const Loop *TailLoop = findTailLoop(F, LI);
  auto IsInTheWay = [&](const Loop *L) {
    return L != TailLoop &&
           none_of(Calls, [L](const CallBase *C) { return L->contains(C); }) &&
           any_of(Calls, [&](const CallBase *C) {
             return DT.dominates(L->getHeader(), C->getParent()) ||
                    DT.dominates(C->getParent(), L->getHeader());
           });
  };
  if (none_of(LI.getLoopsInPreorder(), IsInTheWay))
    return std::nullopt;
  return refuse("AutoWorkInLoop")
         << "it has a loop of its own beside its self calls";
}

/// Why the path that \p Calls are is one that the compiler runs well: it is a
/// loop, by a tail call, as long as a call that stands in another loop is not
/// made.  A matcher of regular expressions ran at 0.95 of plain clang's speed
/// in a ring, and at 0.85 when the loop was made first.
static std::optional<Verdict> findPathInLoops(ArrayRef<CallBase *> Calls,
                                              const LoopInfo &LI,
                                              const DominatorTree &DT) {
  if (!excludeEachOther(Calls, DT) ||
      none_of(Calls, [](const CallBase *C) { return isTailCall(*C); }) ||
      none_of(Calls, [&LI](const CallBase *C) {
        return LI.getLoopFor(C->getParent());
      }))
    return std::nullopt;
  return refuse("AutoPathInLoops")
         << "a tail call of itself becomes a loop, and where it makes another "
            "self call instead, that is in a loop of its own";
}

/// The leaves of \p F, if it counts and they fit into \p Bounds.
/// \p MayEndEarly: it need not run to its end.
static std::optional<RecursionPlan>
planLeaves(Function &F, ArrayRef<CallBase *> Calls, const LoopInfo &LI,
           ScalarEvolution &SE, const AutoBounds &Bounds, bool MayEndEarly) {
  if (!Bounds.InlinerFollows || Bounds.Copies == 0 ||
      any_of(Calls, [&LI](const CallBase *Call) {
        return LI.getLoopFor(Call->getParent());
      }))
    return std::nullopt;
  std::optional<RecursionCounter> Counter =
      findRecursionCounter(F, Calls, Bounds.Copies - 1, SE);
  if (!Counter || !(Counter->IsComplete || MayEndEarly))
    return std::nullopt;

  // Neither the branch of the test is left nor the calls.  The last activation
  // does what stands in front of the test.
  const unsigned LastSize = F.getEntryBlock().sizeWithoutDebug() - 1;
  const unsigned LeafSize = getCodeSize(F) - 1 - Calls.size();
  auto GetSize = [&](unsigned Levels) {
    return estimateFusedSize(LeafSize, Calls.size(), LastSize, Levels,
                             /*Staggered=*/false);
  };
  const uint64_t FrameSize = getFrameSize(F);
  RecursionPlan Plan(Verdict(true, "AutoLeaves"));
  for (unsigned Levels = MinLeafLevels; Levels < Counter->Values.size();
       ++Levels) {
    FusedSize Size = GetSize(Levels);
    SmallVector<unsigned, 2> EntryLevels = {Levels};
    // Who is entered with less than that shall gain too.
    if (Levels / 2 >= MinLeafLevels) {
      EntryLevels.push_back(Levels / 2);
      Size.Instructions += GetSize(Levels / 2).Instructions;
      Size.Bodies += GetSize(Levels / 2).Bodies;
    }
    if (Size.Instructions > Bounds.FunctionGrowth ||
        Size.Bodies * FrameSize > MaxFusedFrame)
      break;
    Plan.Copies = Levels + 1;
    Plan.EntryLevels = EntryLevels;
    Plan.Growth = Size.Instructions;
  }
  if (Plan.Copies == 0)
    return std::nullopt;
  Plan.Kind = RecursionPlan::Leaves;
  Counter->Values.resize(Plan.Copies);
  Plan.Counter = std::move(Counter);
  Plan.Decision << NV("Shape", "leaf chain") << " of "
                << NV("Copies", Plan.Copies)
                << " copies by the automatic policy, entered where "
                << NV("Levels", Plan.EntryLevels.front())
                << " levels are left, growing by about "
                << NV("Growth", Plan.Growth) << " instructions";
  return Plan;
}

/// Is \p TailCall better a loop before the ring is made of \p F, which calls
/// itself once more at \p First?
///
/// Copies of two calls are a tree of bodies, those of one in a loop a row of
/// them.  Walks through trees that make both calls were 1.1 to 1.7 times as
/// fast so, and those with a test at each call and none at the entry, 1.2
/// times.  Where the tail call is one of the ways out, the loop hardly runs:
/// two such searches, 1.7 times as fast as plain in a tree of bodies, gained
/// nothing.  But with many values, loop and tree take more registers than there
/// are; a generator of parentheses ran at 0.9 of plain clang's speed in a tree
/// and at 1.3 in a row.
static bool isBetterRow(Function &F, CallBase &First, CallBase &TailCall,
                        const DominatorTree &DT, const PostDominatorTree &PDT) {
  CallBase *Calls[] = {&First, &TailCall};
  if (!findEntryGuard(F, MaxGuardSize))
    return areTestedOneByOne(Calls, DT, PDT);
  const bool AreMadeTogether =
      DT.dominates(&First, &TailCall) &&
      PDT.dominates(TailCall.getParent(), First.getParent());
  return AreMadeTogether || countSteppedArguments(F, Calls) > MaxSteppedInTree;
}

bool AutoPolicy::wantsLoopsFirst(const AutoBounds &Bounds) {
  const SmallVector<CallBase *, 4> Calls = findSelfCalls(F);
  SmallVector<CallBase *, 4> LoopCalls, OtherCalls;
  for (CallBase *Call : Calls)
    (isTailCall(*Call) || isAccumulating(*Call) ? LoopCalls : OtherCalls)
        .push_back(Call);
  if (LoopCalls.empty() || hasEqualCalls(F, Calls, FAM))
    return false;
  // Left alone, the function stays as it is.
  if (OtherCalls.empty() || OtherCalls.size() > MaxSelfCalls ||
      findOtherWork(F, Calls, FAM.getResult<LoopAnalysis>(F),
                    FAM.getResult<DominatorTreeAnalysis>(F)))
    return false;
  // What counts makes all of its calls, each as deep as the others.
  if (planLeaves(F, Calls, FAM.getResult<LoopAnalysis>(F),
                 FAM.getResult<ScalarEvolutionAnalysis>(F), Bounds,
                 /*MayEndEarly=*/false))
    return false;
  // The lifetime of a variable ends behind an inlined call, which is no tail
  // call any more.
  if (hasVariablesInMemory(F))
    return true;
  if (any_of(LoopCalls, [&](const CallBase *Call) {
        return isAccumulating(*Call) ||
               any_of(Call->args(), [&](const Use &Arg) {
                 return dependsOnResult(Arg, OtherCalls);
               });
      }))
    return true;
  return LoopCalls.size() == 1 && OtherCalls.size() == 1 &&
         isBetterRow(F, *OtherCalls.front(), *LoopCalls.front(),
                     FAM.getResult<DominatorTreeAnalysis>(F),
                     FAM.getResult<PostDominatorTreeAnalysis>(F)) &&
         makePlan(Bounds).Kind == RecursionPlan::Ring;
}

std::optional<Accumulation>
AutoPolicy::findSumToPass(const AutoBounds &Bounds) {
  // A wrapper is left, which an inliner is to remove.
  if (!Bounds.InlinerFollows || hasEqualCalls(F, findSelfCalls(F), FAM))
    return std::nullopt;
  std::optional<Accumulation> Sum =
      findAccumulation(F, FAM.getResult<DominatorTreeAnalysis>(F));
  if (!Sum)
    return std::nullopt;
  const RecursionPlan::Shape Kind = makePlan(Bounds).Kind;
  // Constants make sums, too, in a chain and in leaves.
  if (Kind != RecursionPlan::Ring && Kind != RecursionPlan::Split)
    return std::nullopt;
  return Sum;
}

/// Is the loop around \p Call, a short one, unrolled even where a copy of it is
/// in each of its trips?
static bool isUnrolledInItself(const CallBase &Call, const LoopInfo &LI,
                               ScalarEvolution &SE) {
  const Loop *L = LI.getLoopFor(Call.getParent());
  const unsigned Trips = SE.getSmallConstantTripCount(L);
  // Left at its top, it makes the last trip for the test only.
  const bool IsLeftAtTop = L->getHeader() != Call.getParent() &&
                           SE.getSmallConstantTripCount(L, L->getHeader());
  return isUnrolledInItself(*L, Trips - IsLeftAtTop);
}

/// Why a ring of \p F, which has no guard, is not worth the risk that its
/// copies are entered for nothing.
static std::optional<Verdict> findRisk(unsigned BodySize,
                                       ArrayRef<CallBase *> Calls,
                                       const LoopInfo &LI, ScalarEvolution &SE,
                                       const DominatorTree &DT,
                                       const PostDominatorTree &PDT) {
  // The one who calls has made the test, if he does not call in every trip.
  auto IsTested = [&](const CallBase *Call) {
    const Loop *L = LI.getLoopFor(Call->getParent());
    const BasicBlock *Latch = L ? L->getLoopLatch() : nullptr;
    return !Latch || !DT.dominates(Call->getParent(), Latch);
  };
  auto IsInLoop = [&](const CallBase *Call) {
    return LI.getLoopFor(Call->getParent()) != nullptr;
  };
  if (none_of(Calls, IsInLoop) ? !areTestedOneByOne(Calls, DT, PDT)
                               : none_of(Calls, IsTested))
    return refuse(NoTest)
           << "no test stands in front of its self calls, neither at its entry "
              "nor at each of them";
  // Such a loop is unrolled, as long as it is small.  Rolled copies of it in
  // each other would take that away.
  if (any_of(Calls, [&](const CallBase *Call) {
        return isInShortLoop(*Call, LI, SE) &&
               !isUnrolledInItself(*Call, LI, SE);
      }))
    return refuse("AutoUnrolledLoop")
           << "the loop around its self call is worth more unrolled";
  if (BodySize > MaxUnguardedSize)
    return refuse(NoTest) << "no test stands at its entry, and it has "
                          << NV("Instructions", BodySize)
                          << " instructions, more than "
                          << NV("Limit", MaxUnguardedSize);
  return std::nullopt;
}

/// Does little of \p F, a function of one argument, fold away where that is a
/// constant?  By level 0's own estimate.
static bool foldsLittle(Function &F, ScalarEvolution &SE, DominatorTree &DT) {
  InlineRecursion::InlineRecursionCosting Costing(&F, &SE, &DT, /*OptLevel=*/0);
  Costing.analyzeFunction();
  const auto Estimate = Costing.estimateInlineBenefit();
  return Estimate && Estimate->Benefit * LittleShare < getCodeSize(F);
}

/// The chain that follows \p F to its known depth, if it fits into \p Bounds at
/// every call from outside; nothing where neither a chain nor a ring pays.
static std::optional<RecursionPlan>
planChain(Function &F, ArrayRef<CallBase *> Calls,
          RecursionDepthEstimator &Estimator, const LoopInfo &LI,
          ScalarEvolution &SE, DominatorTree &DT, const AutoBounds &Bounds) {
  // The estimator answers for plain calls only.
  if (Estimator.getCallSites().size() != Calls.size())
    return std::nullopt;
  const std::optional<unsigned> Depth = Estimator.findDeepestRecursion();
  if (!Depth || *Depth > Bounds.Copies)
    return std::nullopt;
  if (*Depth > MaxShortLoops && foldsLittle(F, SE, DT) &&
      any_of(Calls, [&](const CallBase *Call) {
        return isInShortLoop(*Call, LI, SE);
      }))
    return RecursionPlan(refuse("AutoFoldsLittle")
                         << "its short loops would be nested "
                         << NV("Depth", *Depth)
                         << " deep, and a constant argument saves too little "
                            "for that");
  // Of the last activation little is left, at most a loop without the call.
  const FusedSize Size = estimateFusedSize(getCodeSize(F), Calls.size(),
                                           /*GuardSize=*/1, *Depth - 1,
                                           /*Staggered=*/false);
  const unsigned Entries = count_if(F.users(), [&F](const User *U) {
    const auto *Call = dyn_cast<CallInst>(U);
    return Call && Call->getCalledFunction() == &F && Call->getFunction() != &F;
  });
  const uint64_t Growth = Entries * Size.Instructions;
  if (Growth > Bounds.FunctionGrowth ||
      Size.Bodies * getFrameSize(F) > MaxFusedFrame)
    return std::nullopt;
  RecursionPlan Plan(Verdict(true, "AutoChain"));
  Plan.Kind = RecursionPlan::Chain;
  Plan.Copies = *Depth;
  Plan.Growth = Growth;
  Plan.Decision << NV("Shape", "chain") << " of " << NV("Copies", Plan.Copies)
                << (Plan.Copies == 1 ? " copy" : " copies")
                << " by the automatic policy, entered with constants, growing "
                   "by about "
                << NV("Growth", Plan.Growth) << " instructions";
  return Plan;
}

/// Takes \p F apart behind the work in front of its first test, if that is
/// little.
static std::optional<RecursionPlan>
planSplit(Function &F, ArrayRef<CallBase *> Calls, const AutoBounds &Bounds) {
  // What a split has left may begin with the test once more.
  if (F.getName().contains(RestSuffix))
    return std::nullopt;
  std::optional<EntrySplit> Where =
      findEntrySplit(F, MaxGuardSize, Bounds.InlinerFollows);
  if (!Where)
    return std::nullopt;
  const unsigned Growth = Where->Head.Size * (Calls.size() + 1);
  if (Growth > Bounds.FunctionGrowth)
    return std::nullopt;
  RecursionPlan Plan(Verdict(true, "AutoSplit"));
  Plan.Kind = RecursionPlan::Split;
  Plan.Growth = Growth;
  Plan.Decision << NV("Shape", "split") << " by the automatic policy, with the "
                << NV("HeadSize", Where->Head.Size)
                << " instructions up to its first test in front of its "
                << NV("SelfCalls", unsigned(Calls.size()))
                << (Calls.size() == 1 ? " self call" : " self calls")
                << ", growing by about " << NV("Growth", Growth)
                << " instructions";
  Plan.Where = std::move(Where);
  return Plan;
}

/// Most copies with which a ring of \p F pays, whose equal calls do not merge;
/// not more than \p Most.
static unsigned limitCopies(Function &F, ArrayRef<CallBase *> Calls,
                            bool HasGuard, const LoopInfo &LI,
                            ScalarEvolution &SE, const DominatorTree &DT,
                            unsigned Most) {
  const bool AnyInLoop = any_of(Calls, [&LI](const CallBase *Call) {
    return LI.getLoopFor(Call->getParent());
  });
  if (areInSmallTailLoop(Calls, F, LI, SE)) {
    Most = std::min(Most, MaxCopiesInTailLoop);
    const Loop &L = *LI.getLoopFor(Calls.front()->getParent());
    if (Calls.size() == 1)
      if (const unsigned Kept = countKeptValues(F, L, *Calls.front(), SE))
        Most = std::min(Most, MaxKeptValues / Kept);
  } else if (AnyInLoop)
    Most = std::min(Most, MaxCopiesInLoop + (Calls.size() > 1));
  else if (Calls.size() <= 2)
    Most = std::min(Most, MaxCopiesOfFewCalls);
  if (excludeEachOther(Calls, DT))
    Most =
        std::min(Most, AnyInLoop ? MaxCopiesOfPathWithLoop : MaxCopiesOfPath);
  if (!HasGuard && any_of(Calls, [&](const CallBase *Call) {
        return isInShortLoop(*Call, LI, SE);
      }))
    Most = std::min(Most, MaxCopiesInUnrolledLoop);
  return Most;
}

RecursionPlan AutoPolicy::planWithoutRing(ArrayRef<CallBase *> Calls,
                                          unsigned BodySize,
                                          const Verdict &Reason,
                                          const AutoBounds &Bounds) {
  // Leaves leave the other activations as they are.
  if (auto Plan = planLeaves(F, Calls, FAM.getResult<LoopAnalysis>(F),
                             FAM.getResult<ScalarEvolutionAnalysis>(F), Bounds,
                             /*MayEndEarly=*/true))
    return *Plan;
  const bool LacksTest = Reason.Name == NoTest;
  if (LacksTest && BodySize <= MaxUnguardedSize)
    if (auto Plan = planSplit(F, Calls, Bounds))
      return *Plan;
  RecursionPlan Nothing(Reason);
  Nothing.LacksTest = LacksTest;
  return Nothing;
}

RecursionPlan AutoPolicy::planRing(ArrayRef<CallBase *> Calls, bool MergesCalls,
                                   const OtherCalls &Other,
                                   const AutoBounds &Bounds) {
  const unsigned BodySize = getCodeSize(F) + Other.InlinedSize;
  RecursionPlan Plan(Verdict(true, "AutoRing"));
  Plan.Kind = RecursionPlan::Ring;
  unsigned MaxCopies = std::min(Bounds.Copies, MaxCopiesToMerge);
  if (!MergesCalls) {
    const auto &LI = FAM.getResult<LoopAnalysis>(F);
    const auto &DT = FAM.getResult<DominatorTreeAnalysis>(F);
    auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
    Plan.Guard = findEntryGuard(F, MaxGuardSize);
    Plan.Staggered = true;
    if (!Plan.Guard)
      if (auto Reason = findRisk(BodySize, Calls, LI, SE, DT,
                                 FAM.getResult<PostDominatorTreeAnalysis>(F)))
        return planWithoutRing(Calls, BodySize, *Reason, Bounds);
    MaxCopies = limitCopies(F, Calls, Plan.Guard.has_value(), LI, SE, DT,
                            Bounds.Copies);
    if (Other.DirectCount > 0)
      MaxCopies = std::min(MaxCopies, MaxCopiesBesideCalls);
  }
  if (BodySize > MaxRingBodySize)
    return RecursionPlan(refuse("AutoLargeBody")
                         << "its " << NV("Instructions", BodySize)
                         << " instructions, more than "
                         << NV("Limit", MaxRingBodySize)
                         << ", take the time, not its self calls");

  // The more copies the better, as long as they fit.
  const uint64_t FrameSize = getFrameSize(F);
  for (unsigned Copies = 2; Copies <= MaxCopies; ++Copies) {
    const FusedSize Size = estimateFusedSize(BodySize, Calls.size(),
                                             Plan.Guard ? Plan.Guard->Size : 1,
                                             Copies, Plan.Staggered);
    if (Size.Instructions > Bounds.FunctionGrowth ||
        Size.Bodies * FrameSize > MaxFusedFrame)
      break;
    Plan.Copies = Copies;
    Plan.Growth = Size.Instructions;
  }
  if (Plan.Copies == 0)
    return RecursionPlan(refuse("AutoTooLarge")
                         << "two copies of its " << NV("Instructions", BodySize)
                         << " instructions and " << NV("FrameSize", FrameSize)
                         << " bytes of variables, inlined at "
                         << NV("SelfCalls", unsigned(Calls.size()))
                         << " self calls, would take more than "
                         << NV("Limit", Bounds.FunctionGrowth)
                         << " instructions or "
                         << NV("FrameLimit", MaxFusedFrame) << " bytes");

  Plan.Decision << NV("Shape", "ring") << " of " << NV("Copies", Plan.Copies)
                << " copies by the automatic policy, "
                << (MergesCalls  ? "so that equal calls merge, "
                    : Plan.Guard ? "with its first test in front of calls, "
                                 : "")
                << "growing by about " << NV("Growth", Plan.Growth)
                << " instructions";
  return Plan;
}

RecursionPlan AutoPolicy::makePlan(const AutoBounds &Bounds) {
  if (std::optional<Verdict> Obstacle = findObstacle(F))
    return RecursionPlan(*Obstacle);

  const SmallVector<CallBase *, 4> Calls = findSelfCalls(F);
  const bool MergesCalls = hasEqualCalls(F, Calls, FAM);
  if (!MergesCalls && all_of(Calls, [](const CallBase *Call) {
        return isTailCall(*Call) || isAccumulating(*Call);
      }))
    return RecursionPlan(refuse("AutoLoop") << "its recursion becomes a loop");
  if (Calls.size() > MaxSelfCalls) {
    if (getCodeSize(F) <= MaxSizePerCall * Calls.size() &&
        findOtherCalls(F, Bounds.InlinerFollows).Count <= Calls.size())
      if (auto Plan = planSplit(F, Calls, Bounds))
        return *Plan;
    return RecursionPlan(refuse("AutoSelfCalls")
                         << "it calls itself in "
                         << NV("SelfCalls", unsigned(Calls.size()))
                         << " places, more than " << NV("Limit", MaxSelfCalls));
  }
  const auto &LI = FAM.getResult<LoopAnalysis>(F);
  auto &DT = FAM.getResult<DominatorTreeAnalysis>(F);
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(F);
  RecursionDepthEstimator Estimator(&F, &SE, &DT);
  const bool MayBeKnown = Estimator.canEstimateRecursionDepth();
  if (StringRef Reason = Estimator.getDeclineReason(); !Reason.empty())
    return RecursionPlan(refuse("AutoDeclined") << Reason);
  const OtherCalls Other = findOtherCalls(F, Bounds.InlinerFollows);
  if (Other.OnlyCallee)
    return RecursionPlan(
        refuse("AutoOnlyCaller")
        << "it is the only caller of '" << NV("Callee", Other.OnlyCallee)
        << "', whose inlining is worth more than copies with calls of it");
  if (MayBeKnown && Bounds.InlinerFollows)
    if (auto Plan = planChain(F, Calls, Estimator, LI, SE, DT, Bounds))
      return *Plan;
  if (std::optional<Verdict> Reason = findOtherWork(F, Calls, LI, DT))
    return RecursionPlan(*Reason);
  if (std::optional<Verdict> Reason = findPathInLoops(Calls, LI, DT))
    return RecursionPlan(*Reason);
  if (Other.Count > MaxOtherCalls * Calls.size())
    return RecursionPlan(refuse("AutoOtherCalls")
                         << "it makes " << NV("OtherCalls", Other.Count)
                         << " other calls, more than "
                         << NV("Limit", MaxOtherCalls)
                         << " for each self call");
  if (!MergesCalls)
    if (auto Plan = planLeaves(F, Calls, LI, SE, Bounds, /*MayEndEarly=*/false))
      return *Plan;

  return planRing(Calls, MergesCalls, Other, Bounds);
}
