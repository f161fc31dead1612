//===- ChainOffer.cpp - A copy for each level of a known depth ------------===//

#include "host/DirectCalls.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/FusedSize.h"
#include "plugin/policy/Offers.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

std::optional<Plan> llvm::inlinerecursion::offerChain(const Facts &Known,
                                                      const Bounds &Limits) {
  // Constants go from copy to copy by the inliner.
  if (!Limits.InlinerFollows)
    return std::nullopt;
  const std::optional<unsigned> Depth = Known.getDepth();
  if (!Depth || *Depth > Limits.Copies)
    return std::nullopt;
  // Of the last activation little is left, at most a loop without the call.
  FusedSize Size =
      estimateFusedSize(Known.getSize(), Known.getSelfCalls().size(),
                        /*GuardSize=*/1, *Depth - 1,
                        /*Staggered=*/false);
  // All of that at each call from outside.
  Size.Instructions *=
      count_if(findCallsOf(Known.getFunction()),
               [](const CallInst *Call) { return !isSelfCall(*Call); });
  if (!Size.fits(Limits, Known.getFrameSize()))
    return std::nullopt;

  Plan Chain(Plan::Chain, "AutoChain");
  Chain.Copies = *Depth;
  Chain.Growth = Size.Instructions;
  Chain.Decision << NV("Shape", getShapeName(Chain.Kind)) << " of "
                 << NV("Copies", Chain.Copies)
                 << (Chain.Copies == 1 ? " copy" : " copies")
                 << " by the automatic policy, entered with constants, growing "
                    "by about "
                 << NV("Growth", Chain.Growth) << " instructions";
  return Chain;
}
