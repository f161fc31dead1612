//===- RingInlining.cpp - How much of a ring is inlined -------------------===//

#include "plugin/literal/RingInlining.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/ir/CloneChain.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/RingSize.h"
#include "plugin/literal/Reasons.h"
#include "plugin/literal/RingAlignment.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/recursion/Unrolling.h"
#include "plugin/tell/Remarks.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> SizeUnrollableLoop(
    "inlinerecursion-ring-size-loop", cl::init(100), cl::Hidden,
    cl::desc("Largest size at which a copy in a ring is inlined, where a loop "
             "of constant trip count stands around a self call "
             "(instructions)"));

static cl::opt<unsigned> MaxGrowth(
    "inlinerecursion-ring-growth", cl::init(10000), cl::Hidden,
    cl::desc("Most code that inlining copies of rings adds to a module "
             "(instructions)"));

/// Was \p Ring granted by the pass?  Rings of the automatic policy have their
/// test in front of the calls, so that their copies are no copies any more.
static bool isGranted(const CloneChain &Ring) {
  return all_of(Ring.Copies, [](const Function *Copy) {
    return Copy->hasFnAttribute(EligibleMark);
  });
}

/// Has this pass seen \p Ring before, in an earlier run or before linking?
/// Copies that are aligned do different things, and the linker renames: then
/// neither the copies nor the origin are what their names say.
static bool isPlanned(const CloneChain &Ring) {
  return any_of(Ring.Copies, [](const Function *Copy) {
    return Copy->hasFnAttribute(PlannedMark);
  });
}

/// How \p Ring, which the pass has just granted, or which was built in its
/// place, can be aligned.  Where the source asks for it, the ring may become as
/// long as its largest remainder needs; the pass goes by the first one.
static std::optional<RingAlignment> findNewAlignment(const CloneChain &Ring) {
  const unsigned Count = Ring.Copies.size();
  if (asksForRing(*Ring.Origin)) {
    const auto Longer = findAlignment(Ring, std::max(Count, MaxRemainders));
    if (Longer && !judgeRingSize(*Ring.Origin, Longer->Divisor))
      return Longer;
  }
  return findAlignment(Ring, Count);
}

/// How large a copy of \p Ring may be that is inlined.
static unsigned getSizeLimit(const CloneChain &Ring,
                             FunctionAnalysisManager &FAM) {
  Function &Copy = *Ring.Copies.front();
  const auto &LI = FAM.getResult<LoopAnalysis>(Copy);
  auto &SE = FAM.getResult<ScalarEvolutionAnalysis>(Copy);
  const auto Links = findCallsIn(Copy, [&Ring](const Function &Callee) {
    return is_contained(Ring.Copies, &Callee);
  });
  if (any_of(Links, [&](const CallInst *Call) {
        return isInShortLoop(*Call, LI, SE);
      }))
    return SizeUnrollableLoop;
  return getInlinedRingSize(Links.size());
}

PreservedAnalyses RingInliningPass::run(Module &M, ModuleAnalysisManager &MAM) {
  if (M.empty())
    return PreservedAnalyses::all();
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  unsigned GrowthLeft = MaxGrowth;
  bool Changed = false;
  for (CloneChain &Chain : findChains(M, &*M.begin())) {
    if (!Chain.isRing())
      continue;
    const unsigned SizeLimit = getSizeLimit(Chain, FAM);
    const bool IsNew = isGranted(Chain) && !isPlanned(Chain);
    std::optional<RingAlignment> Alignment;
    if (IsNew)
      Alignment = findNewAlignment(Chain);
    if (Alignment)
      alignRing(Chain, *Alignment);
    planInlining(Chain.Copies, SizeLimit, GrowthLeft);
    if (Alignment) {
      enterAlignedRing(Chain, *Alignment);
      Changed = true;
    }
    if (!IsNew)
      continue;
    for (Function *Copy : Chain.Copies)
      Copy->addFnAttr(PlannedMark);
    if (!areRemarksEnabled(M))
      continue;
    Verdict V = describeRing(Chain);
    if (Alignment)
      V << ", one for each remainder";
    emitRemark(*Chain.Origin, V);
  }
  return Changed ? PreservedAnalyses::none() : PreservedAnalyses::all();
}
