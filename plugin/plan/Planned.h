//===- Planned.h - The plan that a function has -----------------*- C++ -*-===//
//
/// \file
/// Between the passes, plans stand on functions as attributes: for the look in
/// front of the inliner, for the one behind it, and the hash of the body that
/// entered the pipeline.  Copies carry the hash of what they were made of.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_PLANNED_H
#define INLINERECURSION_PLUGIN_PLAN_PLANNED_H

#include "plugin/plan/PlanFile.h"
#include <optional>
#include <string>

namespace llvm {

class Function;
class Module;

namespace inlinerecursion {

/// The plan for \p F in the look that is being taken; none if it has none.
std::optional<PlanSpec> getPlan(const Function &F);

/// Where that plan stands, to be told to a user; empty for one in the source.
StringRef getPlanOrigin(const Function &F);

/// Does a plan say what to build of \p F, or to build nothing, in this look or
/// behind the inliner, and does not leave that to the rules of the level?
bool isPlanned(const Function &F);

/// Is there a plan for \p F behind the inliner?
bool isPlannedLate(const Function &F);

/// From now on, functions of \p M may have plans, and hashes of their bodies.
void beginPlans(Module &M);

/// Gives \p F the plan \p Spec, which stands at \p Origin, for the look in
/// front of the inliner or, if \p IsLate, behind it.
void setPlan(Function &F, const PlanSpec &Spec, StringRef Origin, bool IsLate);

/// Takes the plan for this look from \p F.
void dropPlan(Function &F);

/// The look behind the inliner begins: its plans are the ones that count.
void beginLateLook(Module &M);

/// Gives \p F, which has just been built in this look, the plans that the obeyed
/// file has for it, in place of those of the function that it was built of.
void replanPart(Function &F, bool IsLate);

/// Is \p M in a link step, and has seen the plugin in a compile step?
bool isInLinkStep(const Module &M);

/// Where a decision about a function of \p M is taken.
Place getPlace(const Module &M, bool IsLate);

/// The hash of the body of \p F as it entered the pipeline; empty if no plans
/// are obeyed or written.
StringRef getBodyHash(const Function &F);

/// May functions of \p M have plans?
bool hasPlans(const Module &M);

/// Takes all that has to do with plans off the functions of \p M.
void endPlans(Module &M);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_PLANNED_H
