//===- Offers.h - What can be built of a function ---------------*- C++ -*-===//
//
/// \file
/// One function for each shape, all of one kind: it looks at what is known of a
/// function and says what it would build within the limits, or nothing.  None
/// of them looks at what the others would build.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_OFFERS_H
#define INLINERECURSION_PLUGIN_POLICY_OFFERS_H

#include "plugin/rewrite/Plan.h"
#include <optional>

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;

/// A chain is for a depth that follows from constants at the calls from
/// outside, as at level 0, but of any number of arguments, self calls and calls
/// from outside.  It leaves no call, so it needs to fit as a whole.
std::optional<Plan> offerChain(const Facts &Known, const Bounds &Limits);

/// Where constants at the calls from outside determine what some arguments are
/// in every activation, and there are few such states: a copy for each.  Calls
/// from copy to copy stay calls unless little is left of the one that is
/// called, so neither the depth nor the size of the function matters, only what
/// the constants save, and not even that where the source asks for a ring that
/// cannot be built.
std::optional<Plan> offerStates(const Facts &Known, const Bounds &Limits);

/// Why there are no copies for states although constants enter the function;
/// none if none do.
std::optional<Verdict> findReasonAgainstStates(const Facts &Known,
                                               const Bounds &Limits);

/// Adds that reason to \p Refusal, if there is one.
void explainNoStates(const Facts &Known, const Bounds &Limits,
                     Verdict &Refusal);

/// Where a recursion counts, and runs to its end, its last levels are known
/// whatever it is entered with: a chain for those is entered by the function
/// itself, when its counter gets there.  Such leaves are straight-line code
/// that tests nothing.  Kernel: hanoi.
std::optional<Plan> offerLeaves(const Facts &Known, const Bounds &Limits);

/// The same for a recursion that need not run to its end.
std::optional<Plan> offerLeavesAlone(const Facts &Known, const Bounds &Limits);

/// A ring, whose pieces are explained in docs/what-it-tells.md:
///
///  - The test that ends the recursion is put in front of the calls that close
///    the ring (see CallGuard.h).  Without it, the copies of a fused body are
///    entered for nothing as often as their number divides the depth badly.
///  - The second and later self calls of a body skip a copy.  The calls that
///    close the ring then stand at different depths, and no argument is as
///    unlucky as every fourth height of the towers of Hanoi is with four copies
///    linked one after another.
///  - Equal calls merge: where nothing is written, and the arguments step by
///    constants, f(n-1) and f(n-2) share f(n-3).  No call skips a copy then, so
///    that those that are equal are as deep as each other
///    (loops/MergedCalls.h).  A call that is equal to one above it, as f(n-2)
///    is, is made anyhow, and no guard stands in front of it.
///
/// The body is multiplied by the self calls with every copy, so the number of
/// copies is what the bound on growth leaves room for.  Where that is less than
/// two, calls are not what the function spends its time on.
std::optional<Plan> offerRing(const Facts &Known, const Bounds &Limits);

/// Takes the function apart behind the work in front of its first test, if that
/// is little (EntrySplit.h).  For a function of many self calls, whose copies
/// are too large, its leaves are taken out that way.  Kernel: exprtree.
std::optional<Plan> offerSplit(const Facts &Known, const Bounds &Limits);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_OFFERS_H
