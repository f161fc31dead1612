//===- Decisions.h - What was decided about a module ------------*- C++ -*-===//
//
/// \file
/// Decisions are taken in several passes in front of the inliner and behind it,
/// and told as a whole at the end: as one line (Summary.h), and as a plan
/// (PlanRecord.h).  In between they are written down as named metadata:
///
///   PluginPass --> RingInliningPass --> AutoPass --> (inliner) -->
///     begins         adds                 adds
///
///   BehindInlinerPass --> SummaryPass
///     adds                  tells, and takes the metadata away
///
/// The last decision about a function is the one that counts, and for plans, the
/// last one at each place.  One module and
/// one compilation are told about once; in a link-time optimisation compiler
/// and linker are two, and what the first one has rebuilt is not counted by the
/// second.
///
/// Nothing is begun, and nothing written, where nobody listens.  Passes that
/// are put together by hand tell nothing unless PluginPass begins it.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_DECISIONS_H
#define INLINERECURSION_PLUGIN_TELL_DECISIONS_H

#include "plugin/plan/PlanFile.h"
#include "plugin/tell/Verdict.h"
#include <string>
#include <vector>

namespace llvm {

class Function;
class Module;

namespace inlinerecursion {

/// What a decision was.  A part is a function that another one was taken apart
/// into, or a copy.
enum class Outcome : unsigned { Left, Rebuilt, LeftPart, RebuiltPart };

struct Decision {
  /// The name of the function; one that no function has for one without.
  std::string Function;
  Outcome What = Outcome::Left;
  uint64_t Growth = 0;
  /// What was built, as plans say it; empty where nothing was.
  std::string Plan;
  /// The words of the remark.
  std::string Reason;
  /// The hash of the body; empty if none was taken.
  std::string Body;
  Place Where = Place::Early;
};

/// From now on, the decisions about functions of \p M are written down.
void beginDecisions(Module &M);

/// Writes down the decision \p V about \p F, if that was begun.  \p IsPart: F
/// is part of another function.
void addDecision(const Function &F, const Verdict &V, bool IsPart);

/// The last decision about each function of \p M at each place, in the order in
/// which they were first decided about there.
std::vector<Decision> readDecisions(const Module &M);

/// Takes what was written down away.
void endDecisions(Module &M);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_DECISIONS_H
