//===- RingOffer.cpp - A few copies in a circle ---------------------------===//

#include "plugin/policy/CopyLimits.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Offers.h"
#include "plugin/recursion/HoistableCalls.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

std::optional<Plan> llvm::inlinerecursion::offerRing(const Facts &Known,
                                                     const Bounds &Limits) {
  const RingFit Fit = fitRing(Known, Limits);
  if (Fit.Copies == 0)
    return std::nullopt;
  Plan Ring(Plan::Ring, "AutoRing");
  Ring.Copies = Fit.Copies;
  Ring.Growth = Fit.Growth;
  const RingStyle Style = chooseRingStyle(Known);
  Ring.Staggered = Style.Staggered;
  Ring.MergesCalls = !Style.Staggered && Known.mergesCalls();
  if (Style.Guard) {
    Ring.Guard = *Style.Guard;
    Ring.KeepsHoistableCalls = onlyReads(Known.getFunction());
  }
  Ring.Decision << NV("Shape", getShapeName(Ring.Kind)) << " of "
                << NV("Copies", Ring.Copies)
                << " copies by the automatic policy, "
                << (Known.mergesCalls() && !Ring.Staggered
                        ? "so that equal calls merge, "
                        : "")
                << (Ring.Guard ? "with its first test in front of calls, " : "")
                << "growing by about " << NV("Growth", Ring.Growth)
                << " instructions";
  return Ring;
}
