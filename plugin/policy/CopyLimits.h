//===- CopyLimits.h - How many copies of a ring pay -------------*- C++ -*-===//
//
/// \file
/// The more copies the better, as long as they fit and as long as none of the
/// reasons for fewer holds: registers, loops in loops, other calls.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_COPYLIMITS_H
#define INLINERECURSION_PLUGIN_POLICY_COPYLIMITS_H

#include <optional>

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;
struct EntryGuard;

/// A ring that fits.
struct RingFit {
  /// At least 2; 0 if none fits.
  unsigned Copies = 0;
  /// What it adds to the module (instructions).
  unsigned Growth = 0;
};

/// How the copies of a ring are put together.
struct RingStyle {
  /// The test in front of the calls that close it; null if there is none.
  const EntryGuard *Guard;
  /// Do the second and later self calls of a body skip a copy?
  bool Staggered;
};

/// As the plan of the function says, or else as it pays.
RingStyle chooseRingStyle(const Facts &Known);

/// The copies that a plan or the source asks for; none if nobody does.
std::optional<unsigned> getWantedCopies(const Facts &Known);

/// The longest ring that pays and fits into \p Limits.  Where the source or
/// a plan asks for a number of copies, the ring of so many, if it fits.
RingFit fitRing(const Facts &Known, const Bounds &Limits);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_COPYLIMITS_H
