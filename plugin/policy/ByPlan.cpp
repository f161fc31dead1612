//===- ByPlan.cpp - What a plan asks for ----------------------------------===//

#include "plugin/policy/ByPlan.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Obstacles.h"
#include "plugin/policy/Offers.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

namespace {
/// A shape that plans name.
struct PlannedShape {
  Offers Bit;
  std::optional<Plan> (*Make)(const Facts &Known, const Bounds &Limits);
  /// Why it cannot be had, where nothing better is known.
  StringLiteral Otherwise;
};
} // namespace

static const PlannedShape *findShape(PlanSpec::Shape Kind) {
  static constexpr PlannedShape Chain = {
      OfferChain, offerChain,
      "no constant depth is known of it, or it is too large"};
  static constexpr PlannedShape Ring = {OfferRing, offerRing,
                                        "so many copies of it are too large"};
  static constexpr PlannedShape Leaves = {
      OfferLeaves, offerLeavesAlone,
      "it does not count down to a constant by a constant, as far as is known, "
      "or so many levels are too large"};
  static constexpr PlannedShape Split = {
      OfferSplit, offerSplit,
      "it has no test that it could be taken apart behind"};
  static constexpr PlannedShape States = {
      OfferStates, offerStates,
      "no such finite states follow from constants that enter it, or they are "
      "too large"};
  switch (Kind) {
  case PlanSpec::None:
    return nullptr;
  case PlanSpec::Chain:
    return &Chain;
  case PlanSpec::Ring:
    return &Ring;
  case PlanSpec::Leaves:
    return &Leaves;
  case PlanSpec::Split:
    return &Split;
  case PlanSpec::States:
    return &States;
  }
  llvm_unreachable("a shape that is not known");
}

/// Something that stands against \p Wanted for whoever asks; none if nothing
/// does.
static std::optional<Verdict> findFirmObstacle(const Facts &Known,
                                               const Bounds &Limits,
                                               const PlannedShape &Wanted) {
  for (const Obstacle &InTheWay : getObstacles()) {
    Verdict Why = refuse(InTheWay.Name, InTheWay.Remedy);
    // What is too large for a ring may be something else all the same.
    if (InTheWay.IsFirm && !(InTheWay.Open & Wanted.Bit) &&
        InTheWay.Holds(Known, Limits, Why))
      return Why;
  }
  return std::nullopt;
}

/// What \p Spec says about \p Made that is not so; empty if all is.
static std::string findDifference(const Plan &Made, const PlanSpec &Spec) {
  if (Spec.Copies && Made.Copies != *Spec.Copies)
    return "there would be " + std::to_string(Made.Copies) + " copies";
  if (Spec.Guard && *Spec.Guard != Made.Guard.has_value())
    return "no test at its entry is small enough to be made in front of calls";
  if (!Spec.Arguments.empty() && describe(Made).Arguments != Spec.Arguments)
    return "the states would be of other arguments";
  return "";
}

/// What \p Wanted is within \p Limits, or why it is not.
static Plan makeShape(const Facts &Known, const Bounds &Limits,
                      const PlannedShape &Wanted) {
  if (std::optional<Verdict> Why = findFirmObstacle(Known, Limits, Wanted))
    return Plan(std::move(*Why));
  if (std::optional<Plan> Made = Wanted.Make(Known, Limits))
    return std::move(*Made);
  return Plan(refuse("NotPossible") << Wanted.Otherwise);
}

Plan llvm::inlinerecursion::makePlanByWords(const Facts &Known, Bounds Limits) {
  const PlanSpec &Spec = *Known.getPlan();
  const PlannedShape *Wanted = findShape(Spec.Kind);
  if (!Wanted)
    return Plan(refuse("LeftByPlan") << "its plan leaves it as it is");
  if (Spec.ByRules)
    return Plan(refuse("NotByRules")
                << "the rules of the level do not build it");

  Plan Made(refuse(""));
  // Numbers that the plan leaves open are those that the policy would take.
  const bool AreOpen = !Spec.Copies && Spec.Levels.empty();
  if (AreOpen)
    Made = makeShape(Known, Limits, *Wanted);
  if (Spec.Copies)
    Limits.Copies = *Spec.Copies;
  if (!Spec.Levels.empty())
    Limits.Copies = Spec.Levels.front() + 1;
  Limits.RingCopies = ~0u;
  Limits.FunctionGrowth = Limits.StateGrowth = Limits.PlannedGrowth;
  if (Made.Kind == Plan::Nothing)
    Made = makeShape(Known, Limits, *Wanted);
  const std::string Difference =
      Made.Kind == Plan::Nothing ? "" : findDifference(Made, Spec);
  return Difference.empty() ? std::move(Made)
                            : Plan(refuse("NotPossible") << Difference);
}
