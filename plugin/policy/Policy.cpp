//===- Policy.cpp - What pays without being asked -------------------------===//

#include "plugin/policy/Policy.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/ByPlan.h"
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
    {OfferChain, offerChain},
    {OfferStates, offerStates},
    {OfferLeaves, offerLeaves},
    {OfferRing, offerRing},
    {OfferLeavesAlone, offerLeavesAlone},
    {OfferSplit, offerSplit},
};

/// What is built of a function whose source asks for \p Count copies: what
/// does not pay may be asked for.
static Plan makeRequestedPlan(const Facts &Known, Bounds Limits,
                              unsigned Count) {
  Limits.Copies = Count;
  Limits.FunctionGrowth = Limits.RequestedGrowth;
  Plan Refused(refuse(""));
  for (const Obstacle &InTheWay : getObstacles()) {
    Verdict Why = refuse(InTheWay.Name);
    if (!InTheWay.IsFirm || !InTheWay.Holds(Known, Limits, Why))
      continue;
    Refused.Decision = std::move(Why);
    // A chain may fit where a ring does not.
    if (!(InTheWay.Open & OfferChain))
      return Refused;
  }
  if (std::optional<Plan> Chain = offerChain(Known, Limits))
    return std::move(*Chain);
  if (std::optional<Plan> Ring = offerRing(Known, Limits))
    return std::move(*Ring);
  return Refused;
}

/// The copies for states of a function whose source asks for a ring that cannot
/// be built, whatever they save.
static std::optional<Plan> makeRequestedStates(const Facts &Known,
                                               Bounds Limits) {
  Limits.StateGrowth = Limits.RequestedGrowth;
  for (const Obstacle &InTheWay : getObstacles()) {
    Verdict Why = refuse(InTheWay.Name);
    if (InTheWay.IsFirm && !(InTheWay.Open & OfferStates) &&
        InTheWay.Holds(Known, Limits, Why))
      return std::nullopt;
  }
  return offerStates(Known, Limits);
}

Plan llvm::inlinerecursion::makePlan(const Facts &Known, const Bounds &Limits) {
  if (Known.getPlan())
    return makePlanByWords(Known, Limits);
  if (const std::optional<unsigned> Count = Known.getRequestedCopies())
    return makeRequestedPlan(Known, Limits, *Count);
  if (Known.asksForStates())
    if (std::optional<Plan> States = makeRequestedStates(Known, Limits))
      return std::move(*States);
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
  bool AskedForStates = false;
  for (const Offer &Next : InOrder) {
    if (!(Open & Next.Bit))
      continue;
    if (std::optional<Plan> Offered = Next.Make(Known, Limits)) {
      if (AskedForStates)
        Offered->NoStates = findReasonAgainstStates(Known, Limits);
      return std::move(*Offered);
    }
    AskedForStates |= Next.Bit == OfferStates;
  }
  if (Open & OfferStates)
    explainNoStates(Known, Limits, Refused.Decision);
  return Refused;
}
