//===- ByPlan.h - What a plan asks for --------------------------*- C++ -*-===//
//
/// \file
/// Where somebody has said what to build (plan/PlanSpec.h), nothing is asked
/// about profit: the offer of that shape is taken, with the numbers of the
/// plan.  What cannot be built, or would need stack that a loop does not, is
/// refused all the same, and so is what would keep a compiler busy for long.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_BYPLAN_H
#define INLINERECURSION_PLUGIN_POLICY_BYPLAN_H

#include "plugin/rewrite/Plan.h"

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;

/// What the plan of a function, which it has, asks for; nothing, and why, if
/// that cannot be built.
Plan makePlanByWords(const Facts &Known, Bounds Limits);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_BYPLAN_H
