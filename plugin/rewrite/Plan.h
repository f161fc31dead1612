//===- Plan.h - What is to be built of one function -------------*- C++ -*-===//
//
/// \file
/// What the policy hands to the builder.  The policy fills it in and changes no
/// code; the builder does what it says and decides nothing.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_PLAN_H
#define INLINERECURSION_PLUGIN_REWRITE_PLAN_H

#include "plugin/plan/PlanSpec.h"
#include "plugin/recursion/States.h"
#include "plugin/rewrite/CallGuard.h"
#include "plugin/rewrite/CountedRecursion.h"
#include "plugin/rewrite/EntrySplit.h"
#include "plugin/tell/Verdict.h"
#include <memory>

namespace llvm {
namespace inlinerecursion {

struct Plan {
  /// A chain as the pass builds it at level 0; a chain of leaves, which the
  /// function itself enters (Leaves.h); a ring (Ring.h); a function taken
  /// apart, whose rest is to be asked about in turn (EntrySplit.h); or one copy
  /// for each state (StateCopies.h).
  enum Shape { Nothing, Chain, Leaves, Ring, Split, States };

  Shape Kind = Nothing;
  /// At least 1 for a chain, 3 for leaves, 2 for a ring and 1 for states, 0 for
  /// others.
  unsigned Copies = 0;
  /// What leaves are entered by: as many values as there are copies.
  std::optional<RecursionCounter> Counter;
  /// How many levels above the last activation leaves are entered.
  SmallVector<unsigned, 2> EntryLevels;
  /// Where the function is taken apart.
  std::optional<EntrySplit> Where;
  /// What each copy knows; as many as there are copies.
  std::shared_ptr<const StateSet> Known;
  /// In front of the calls that close a ring, and all that is left of the
  /// function, which enters it.
  std::optional<EntryGuard> Guard;
  /// Calls from outside stay calls that a loop may make once
  /// (HoistableCalls.h), and do not get the guard in front of them.
  bool KeepsHoistableCalls = false;
  /// The second and later self calls of a body lead to the copy after the next.
  bool Staggered = false;
  /// Equal calls in a ring are to become one.
  bool MergesCalls = false;
  /// What it adds to the module, once all copies are inlined that are to be
  /// (instructions).
  unsigned Growth = 0;
  /// Nothing is built, for a reason that other calls may take away once they
  /// are inlined: a test may stand in front of the self calls then.
  bool MayGoAway = false;
  /// The decision in words.
  Verdict Decision;
  /// Why it is no copies for states, which go before others, although constants
  /// enter the function; none if none do.
  std::optional<Verdict> NoStates;

  /// Nothing, for the reason in \p Refusal.
  explicit Plan(Verdict Refusal) : Decision(std::move(Refusal)) {}
  /// The shape \p Kind, the numbers to be filled in.
  Plan(Shape Kind, StringRef Name) : Kind(Kind), Decision(accept(Name)) {}
};

/// What \p Made is in the language of plans.  What was done to the function
/// before is not known to it.
PlanSpec describe(const Plan &Made);

/// What remarks call it; "nothing" where nothing is built.
StringRef getShapeName(Plan::Shape Kind);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_PLAN_H
