//===- Policy.h - What pays without being asked -----------------*- C++ -*-===//
//
/// \file
/// The pass takes one shape of recursion.  For what it refuses, this policy
/// decides what to build, if anything.  It reads and changes nothing.
///
///   Facts ---> Obstacles ---> what is open ---> Offers ---> a plan
///                 |                               |
///                 +---- the first that holds -----+---> why there is none
///
/// Obstacles are a table; the first that holds says which shapes are open in
/// spite of it.  Of these, the first offer is taken, in the order of what they
/// gain where they fit: chain, leaves, ring, leaves of a recursion that may end
/// early, split.
///
/// Two changes of a function come before its plan (Preparation.h).  Where a
/// plan file or the source says what to build, that is built (ByPlan.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_POLICY_H
#define INLINERECURSION_PLUGIN_POLICY_POLICY_H

#include "plugin/rewrite/Plan.h"

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;

/// What is to be built of a function, or why nothing is.
Plan makePlan(const Facts &Known, const Bounds &Limits);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_POLICY_H
