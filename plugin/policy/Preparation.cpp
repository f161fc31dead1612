//===- Preparation.cpp - What a function becomes before its plan ----------===//

#include "plugin/policy/Preparation.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Obstacles.h"
#include "plugin/policy/Offers.h"
#include "plugin/policy/Tuning.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/PostDominators.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;

std::optional<Accumulation>
llvm::inlinerecursion::findSumToPass(const Facts &Known, const Bounds &Limits,
                                     const Plan &Unprepared) {
  // A wrapper is left, which an inliner is to remove.
  if (!Limits.InlinerFollows)
    return std::nullopt;
  if (const PlanSpec *Wanted = Known.getPlan(); Wanted && Wanted->PassSum)
    return *Wanted->PassSum
               ? findAccumulation(Known.getFunction(), Known.getDominators())
               : std::nullopt;
  if (Known.mergesCalls())
    return std::nullopt;
  // Constants make sums, too, in a chain and in leaves.
  if (Unprepared.Kind != Plan::Ring && Unprepared.Kind != Plan::Split)
    return std::nullopt;
  return findAccumulation(Known.getFunction(), Known.getDominators());
}

static bool hasVariablesInMemory(const Function &F) {
  return any_of(instructions(F),
                [](const Instruction &I) { return isa<AllocaInst>(I); });
}

/// Is \p TailCall better a loop before a ring is made of the function, which
/// calls itself once more at \p First?
///
/// Copies of two calls are a tree of bodies, those of one call in a loop a row
/// of them.  A walk through a tree that makes both calls is faster in a row,
/// and so is one with a test at each call and none at the entry.  Where the
/// tail call is one of several ways out, the loop hardly runs, and the tree is
/// better. But with many values, loop and tree take more registers than there
/// are, and a row takes less.
static bool isBetterRow(const Facts &Known, CallBase &First,
                        CallBase &TailCall) {
  const DominatorTree &DT = Known.getDominators();
  const PostDominatorTree &PDT = Known.getPostDominators();
  CallBase *Calls[] = {&First, &TailCall};
  if (!Known.getGuard())
    return areTestedOneByOne(Calls, DT, PDT);
  const bool AreMadeTogether =
      DT.dominates(&First, &TailCall) &&
      PDT.dominates(TailCall.getParent(), First.getParent());
  return AreMadeTogether ||
         countSteppedArguments(Known.getFunction(), Calls) > MaxSteppedInTree;
}

bool llvm::inlinerecursion::wantsLoopsFirst(const Facts &Known,
                                            const Bounds &Limits,
                                            const Plan &Unprepared) {
  // Of a state that leads to itself a loop is made in its copy.
  if (Unprepared.Kind == Plan::States)
    return false;
  SmallVector<CallBase *, 4> LoopCalls, OtherCalls;
  for (CallBase *Call : Known.getSelfCalls())
    (becomesLoop(*Call) ? LoopCalls : OtherCalls).push_back(Call);
  // Left alone, the function stays as it is.
  if (LoopCalls.empty() || OtherCalls.empty())
    return false;
  if (const PlanSpec *Wanted = Known.getPlan(); Wanted && Wanted->LoopFirst)
    return *Wanted->LoopFirst;
  if (Known.mergesCalls() || OtherCalls.size() > MaxSelfCalls ||
      hasWorkInLoop(Known))
    return false;
  // What counts makes all of its calls, each as deep as the others.
  if (offerLeaves(Known, Limits))
    return false;
  // The lifetime of a variable ends behind an inlined call, which is no tail
  // call any more.
  if (hasVariablesInMemory(Known.getFunction()))
    return true;
  if (any_of(LoopCalls, [&](const CallBase *Call) {
        return isAccumulating(*Call) ||
               any_of(Call->args(), [&](const Use &Arg) {
                 return dependsOnResult(Arg, OtherCalls);
               });
      }))
    return true;
  return LoopCalls.size() == 1 && OtherCalls.size() == 1 &&
         Unprepared.Kind == Plan::Ring &&
         isBetterRow(Known, *OtherCalls.front(), *LoopCalls.front());
}
