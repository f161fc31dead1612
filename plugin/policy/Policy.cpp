//===- Policy.cpp - What pays without being asked -------------------------===//

#include "plugin/policy/Policy.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Obstacles.h"
#include "plugin/policy/Offers.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// A shape that may be open.
struct Offer {
  Offers Bit;
  std::optional<Plan> (*Make)(const Facts &Known, const Bounds &Limits);
};
} // namespace

static constexpr Offer InOrder[] = {
    {OfferChain, offerChain}, {OfferLeaves, offerLeaves},
    {OfferRing, offerRing},   {OfferLeavesAlone, offerLeavesAlone},
    {OfferSplit, offerSplit},
};

Plan llvm::inlinerecursion::makePlan(const Facts &Known, const Bounds &Limits) {
  unsigned Open = OpenWithoutObstacle;
  // Without an obstacle there is a ring at least.
  Plan Refused(refuse(""));
  for (const Obstacle &InTheWay : getObstacles()) {
    Verdict Why = refuse(InTheWay.Name, InTheWay.Remedy);
    if (!InTheWay.Holds(Known, Limits, Why))
      continue;
    Open = InTheWay.Open;
    Refused.Decision = std::move(Why);
    Refused.MayGoAway = InTheWay.MayGoAway;
    break;
  }
  for (const Offer &Next : InOrder)
    if (Open & Next.Bit)
      if (std::optional<Plan> Offered = Next.Make(Known, Limits))
        return std::move(*Offered);
  return Refused;
}
