//===- LeavesOffer.cpp - The last levels of a recursion that counts -------===//

#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/FusedSize.h"
#include "plugin/policy/Offers.h"
#include "plugin/policy/Tuning.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;
using ore::NV;

namespace {
/// How large leaves of so many levels are.
class LeafSizes {
public:
  explicit LeafSizes(const Facts &Known)
      : SelfCalls(Known.getSelfCalls().size()),
        // Neither the branch of the test is left nor the calls.
        LeafSize(Known.getSize() - 1 - SelfCalls),
        // The last activation does what stands in front of the test.
        LastSize(Known.getFunction().getEntryBlock().sizeWithoutDebug() - 1) {}

  FusedSize getSize(unsigned Levels) const {
    return estimateFusedSize(LeafSize, SelfCalls, LastSize, Levels,
                             /*Staggered=*/false);
  }

private:
  unsigned SelfCalls, LeafSize, LastSize;
};
} // namespace

/// Finds out how many levels of \p Counter fit, and puts them to \p Leaves.
static void fitLeaves(const Facts &Known, const RecursionCounter &Counter,
                      const Bounds &Limits, Plan &Leaves) {
  const LeafSizes Sizes(Known);
  for (unsigned Levels = MinLeafLevels; Levels < Counter.Values.size();
       ++Levels) {
    FusedSize Size = Sizes.getSize(Levels);
    SmallVector<unsigned, 2> EntryLevels = {Levels};
    // Who is entered with less than that shall gain too.
    if (Levels / 2 >= MinLeafLevels) {
      EntryLevels.push_back(Levels / 2);
      Size += Sizes.getSize(Levels / 2);
    }
    if (!Size.fits(Limits, Known.getFrameSize()))
      return;
    Leaves.Copies = Levels + 1;
    Leaves.EntryLevels = EntryLevels;
    Leaves.Growth = Size.Instructions;
  }
}

/// The same for the levels that a plan names.
static void fitPlannedLevels(const Facts &Known, ArrayRef<unsigned> Levels,
                             const RecursionCounter &Counter,
                             const Bounds &Limits, Plan &Leaves) {
  if (Counter.Values.size() <= Levels.front())
    return;
  const LeafSizes Sizes(Known);
  FusedSize Size;
  for (unsigned Level : Levels)
    Size += Sizes.getSize(Level);
  if (!Size.fits(Limits, Known.getFrameSize()))
    return;
  Leaves.Copies = Levels.front() + 1;
  Leaves.EntryLevels.assign(Levels.begin(), Levels.end());
  Leaves.Growth = Size.Instructions;
}

/// The leaves of a function that counts; \p MayEndEarly: it need not run to its
/// end.
static std::optional<Plan> offer(const Facts &Known, const Bounds &Limits,
                                 bool MayEndEarly) {
  if (!Limits.InlinerFollows || Limits.Copies == 0 || Known.anyInLoop())
    return std::nullopt;
  std::optional<RecursionCounter> Counter =
      findRecursionCounter(Known.getFunction(), Known.getSelfCalls(),
                           Limits.Copies - 1, Known.getEvolution());
  if (!Counter || !(Counter->IsComplete || MayEndEarly))
    return std::nullopt;

  Plan Leaves(Plan::Leaves, "AutoLeaves");
  if (const PlanSpec *Wanted = Known.getPlan();
      Wanted && !Wanted->Levels.empty())
    fitPlannedLevels(Known, Wanted->Levels, *Counter, Limits, Leaves);
  else
    fitLeaves(Known, *Counter, Limits, Leaves);
  if (Leaves.Copies == 0)
    return std::nullopt;
  Counter->Values.resize(Leaves.Copies);
  Leaves.Counter = std::move(Counter);
  Leaves.Decision << NV("Shape", getShapeName(Leaves.Kind)) << " of "
                  << NV("Copies", Leaves.Copies)
                  << " copies by the automatic policy, entered where "
                  << NV("Levels", Leaves.EntryLevels.front())
                  << " levels are left, growing by about "
                  << NV("Growth", Leaves.Growth) << " instructions";
  return Leaves;
}

std::optional<Plan> llvm::inlinerecursion::offerLeaves(const Facts &Known,
                                                       const Bounds &Limits) {
  // Merged, the calls of two copies are less than all of them.
  return Known.mergesCalls() ? std::nullopt
                             : offer(Known, Limits, /*MayEndEarly=*/false);
}

std::optional<Plan>
llvm::inlinerecursion::offerLeavesAlone(const Facts &Known,
                                        const Bounds &Limits) {
  return offer(Known, Limits, /*MayEndEarly=*/true);
}
