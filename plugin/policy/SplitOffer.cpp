//===- SplitOffer.cpp - Work and test done by those who call --------------===//

#include "plugin/ir/Names.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Offers.h"
#include "plugin/policy/Tuning.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;
using ore::NV;

/// Is the function one that gains when its leaves are no calls?
static bool hasCheapLeaves(const Facts &Known) {
  const unsigned SelfCalls = Known.getSelfCalls().size();
  if (SelfCalls > MaxSelfCalls)
    return Known.getSize() <= MaxSizePerCall * SelfCalls &&
           Known.getOtherCalls().Count <= SelfCalls;
  return Known.getBodySize() <= MaxUnguardedSize;
}

std::optional<Plan> llvm::inlinerecursion::offerSplit(const Facts &Known,
                                                      const Bounds &Limits) {
  Function &F = Known.getFunction();
  // What a split has left may begin with the test once more.
  if (!(Known.getPlan() || hasCheapLeaves(Known)) ||
      F.getName().contains(RestSuffix))
    return std::nullopt;
  std::optional<EntrySplit> Where =
      findEntrySplit(F, MaxGuardSize, Limits.InlinerFollows);
  if (!Where)
    return std::nullopt;
  const unsigned SelfCalls = Known.getSelfCalls().size();
  const unsigned Growth = Where->Head.Size * (SelfCalls + 1);
  if (Growth > Limits.FunctionGrowth)
    return std::nullopt;
  Plan Split(Plan::Split, "AutoSplit");
  Split.Growth = Growth;
  Split.Decision << NV("Shape", getShapeName(Split.Kind))
                 << " by the automatic policy, with the "
                 << NV("HeadSize", Where->Head.Size)
                 << " instructions up to its first test in front of its "
                 << NV("SelfCalls", SelfCalls)
                 << (SelfCalls == 1 ? " self call" : " self calls")
                 << ", growing by about " << NV("Growth", Growth)
                 << " instructions";
  Split.Where = std::move(Where);
  return Split;
}
