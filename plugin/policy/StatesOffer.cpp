//===- StatesOffer.cpp - A copy for each state ----------------------------===//

#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/policy/Offers.h"
#include "plugin/policy/StateWords.h"
#include "plugin/policy/Tuning.h"
#include "plugin/recursion/SelfCalls.h"
#include "llvm/ADT/SmallSet.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/IR/Function.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::inlinerecursion::tuning;
using ore::NV;

/// Is that what every call does, so that interprocedural constant propagation
/// finds it as well?
static bool isOneStateForAll(const Function &F, const StateSet &Found) {
  return Found.States.size() == 1 && F.hasLocalLinkage() &&
         F.getNumUses() ==
             Found.Entries.size() + Found.States.front().Next.size();
}

/// The arguments that \p States know, and what of them.
static void describeStates(const Function &F, const StateSet &States,
                           Verdict &Text) {
  ListSeparator And(" and ");
  for (const Argument &A : F.args())
    if (States.isKnown(A.getArgNo()))
      Text << StringRef(And) << NV("State", describeValues(A, States));
}

/// Can the activations of state \p To lead to state \p From?
static bool leadsTo(const StateSet &States, unsigned To, unsigned From) {
  SmallVector<unsigned, 16> Worklist = {To};
  SmallSet<unsigned, 16> Seen;
  while (!Worklist.empty()) {
    const unsigned Number = Worklist.pop_back_val();
    if (Number == From)
      return true;
    if (Seen.insert(Number).second)
      for (const Successor &Next : States.States[Number].Next)
        Worklist.push_back(Next.State);
  }
  return false;
}

/// Would a self call that the compiler makes a loop of, with no need of stack,
/// be a call from copy to copy again and again?  A plain tail call stays one,
/// which needs no stack either, unless variables in memory forbid it.
static bool losesLoop(const Facts &Known, const StateSet &States) {
  const bool AnyInMemory = Known.getFrameSize() != 0;
  for (auto [From, S] : enumerate(States.States))
    for (const Successor &Next : S.Next)
      if (Next.State != From && becomesLoop(*Next.Call) &&
          (isAccumulating(*Next.Call) || AnyInMemory) &&
          leadsTo(States, Next.State, From))
        return true;
  return false;
}

/// Is there anything against copies for the states of a function, of which
/// there are some, or none because one argument takes too many values?  If so,
/// that is appended to \p Why.
static bool isNotWorthIt(const Facts &Known, const Bounds &Limits,
                         Verdict &Why) {
  const StateSet &Found = *Known.getStates();
  if (Found.empty()) {
    const Argument &A = *Found.Growing;
    Why << "no finite states: " << NV("State", describe(A))
        << " takes more than " << NV("Limit", MaxStates) << " values";
    return true;
  }
  const unsigned Saved = Found.getSavedShare() * 100;
  if (Saved < MinStatesSaved && !Known.asksForStates() && !Known.getPlan()) {
    Why << "known arguments would save " << NV("Saved", Saved)
        << " % of the time, less than " << NV("Limit", MinStatesSaved);
    return true;
  }
  if (losesLoop(Known, Found)) {
    Why << "what becomes a loop would be calls between its states";
    return true;
  }
  if (Found.getSize() > Limits.StateGrowth) {
    Why << "copies for " << NV("States", unsigned(Found.States.size()))
        << " states would add " << NV("Growth", Found.getSize())
        << " instructions, more than " << NV("Limit", Limits.StateGrowth);
    return true;
  }
  return false;
}

std::optional<Plan> llvm::inlinerecursion::offerStates(const Facts &Known,
                                                       const Bounds &Limits) {
  // Copies are simplified and cleaned up by what follows the inliner.
  if (!Limits.InlinerFollows)
    return std::nullopt;
  const Function &F = Known.getFunction();
  const std::shared_ptr<const StateSet> Found = Known.getStates();
  Verdict Why = refuse("");
  if (Found->empty() || isOneStateForAll(F, *Found) ||
      isNotWorthIt(Known, Limits, Why))
    return std::nullopt;

  Plan Copies(Plan::States, "AutoStates");
  Copies.Known = Found;
  Copies.Copies = Found->States.size();
  Copies.Growth = Found->getSize();
  Copies.Decision.Outcome = "rebuilt for ";
  Copies.Decision << NV("Copies", Copies.Copies)
                  << (Copies.Copies == 1 ? " state" : " states") << " of ";
  describeStates(F, *Found, Copies.Decision);
  Copies.Decision << " by the automatic policy, "
                  << NV("Saved", unsigned(Found->getSavedShare() * 100))
                  << " % of " << NV("Instructions", Known.getSize())
                  << " instructions folded, growing by about "
                  << NV("Growth", Copies.Growth) << " instructions";
  Copies.Decision.RecordOnly = {NV("States", listStates(F, *Found)),
                                NV("Links", listLinks(F, *Found))};
  return Copies;
}

std::optional<Verdict>
llvm::inlinerecursion::findReasonAgainstStates(const Facts &Known,
                                               const Bounds &Limits) {
  // Behind the inliner, and with no room at all, nothing has been looked for.
  if (!Limits.InlinerFollows || Limits.StateGrowth == 0)
    return std::nullopt;
  const StateSet &Found = *Known.getStates();
  if ((Found.empty() && !Found.Growing) ||
      isOneStateForAll(Known.getFunction(), Found))
    return std::nullopt;
  Verdict Why = refuse("NoStates");
  if (!isNotWorthIt(Known, Limits, Why))
    return std::nullopt;
  return Why;
}

void llvm::inlinerecursion::explainNoStates(const Facts &Known,
                                            const Bounds &Limits,
                                            Verdict &Refusal) {
  std::optional<Verdict> Why = findReasonAgainstStates(Known, Limits);
  if (!Why)
    return;
  Refusal << "; for constants, ";
  for (Verdict::Argument &Piece : Why->Message)
    Refusal << std::move(Piece);
}
