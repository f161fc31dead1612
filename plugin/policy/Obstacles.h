//===- Obstacles.h - What keeps a function as it is -------------*- C++ -*-===//
//
/// \file
/// The reasons of the automatic policy to leave a function alone, or to leave
/// it out of most shapes, in one table: what holds, in words, and what it
/// leaves open.  The first one that holds decides.
///
/// These are reasons of profit.  Whether a function may be copied at all has
/// been asked before (legality/Hazards.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_OBSTACLES_H
#define INLINERECURSION_PLUGIN_POLICY_OBSTACLES_H

#include "plugin/tell/Verdict.h"
#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/StringRef.h"

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;

/// What can be offered for a function, as a set of bits.
enum Offers : unsigned {
  OfferNothing = 0,
  OfferChain = 1,
  /// Leaves of a recursion that runs to its end.
  OfferLeaves = 2,
  OfferRing = 4,
  /// Leaves of one that may end early, where no ring is built: they leave the
  /// other activations as they are.
  OfferLeavesAlone = 8,
  OfferSplit = 16,
  /// A copy for each state.
  OfferStates = 32,
};

/// One reason against something.
struct Obstacle {
  /// A remark's name, one word in UpperCamelCase.
  StringLiteral Name;
  /// What it leaves open (Offers).
  unsigned Open;
  /// Nothing is built, but once other calls are inlined that may change.
  bool MayGoAway;
  /// Does it stand against copies that the source asks for, too?  What no
  /// inliner takes, or what would need stack that a loop does not, is not built
  /// for anybody.
  bool IsFirm;
  /// Does it hold?  If so, the reason is appended as half a sentence.
  bool (*Holds)(const Facts &Known, const Bounds &Limits, Verdict &Why);
  /// What the user can do about it, in a few words; empty where nothing helps,
  /// where what would help loses elsewhere, and where the reason says it for
  /// the case at hand.
  StringLiteral Remedy = "";
};

/// All of them, in the order in which they are asked.
ArrayRef<Obstacle> getObstacles();

/// What is open where none holds.
constexpr unsigned OpenWithoutObstacle =
    OfferChain | OfferStates | OfferLeaves | OfferRing;

/// Does a loop without self calls take the time that the function spends?  What
/// a leaf does in a loop is another matter, and so is the loop that a self call
/// has become: a comparison of two strings recurses twice where they differ and
/// goes on where they do not.
bool hasWorkInLoop(const Facts &Known);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_OBSTACLES_H
