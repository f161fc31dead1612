//===- Preparation.h - What a function becomes before its plan --*- C++ -*-===//
//
/// \file
/// Two changes make a ring pay more, or leave to a loop what a loop does
/// better. The plan is then made for what the function has become.
///
///  - Where results are added up, the sum is handed on from self call to self
///    call (AccumulatorPassing.h), unless constants or equal calls make more of
///    it.
///  - What tail recursion elimination turns into a loop is left to it.  An
///    accumulator, because otherwise the recursion would need stack; a tail
///    call whose arguments are results of other self calls, because copies of
///    it know nothing; the tail call beside one other call, as in a walk
///    through a tree, because copies of what is left are a row of bodies and
///    not a tree of them.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_PREPARATION_H
#define INLINERECURSION_PLUGIN_POLICY_PREPARATION_H

#include "plugin/rewrite/AccumulatorPassing.h"
#include "plugin/rewrite/Plan.h"

namespace llvm {
namespace inlinerecursion {

class Facts;
struct Bounds;

/// The sum that the function is to hand on from call to call first, if
/// \p Unprepared, the plan for it as it is, is a ring or leads to one.
std::optional<Accumulation>
findSumToPass(const Facts &Known, const Bounds &Limits, const Plan &Unprepared);

/// Is tail recursion elimination to be run on the function first, for which
/// \p Unprepared is the plan as it is?
bool wantsLoopsFirst(const Facts &Known, const Bounds &Limits,
                     const Plan &Unprepared);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_PREPARATION_H
