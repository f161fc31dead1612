//===- Remarks.h - What was decided, told to the user -----------*- C++ -*-===//
//
/// \file
/// One remark for every directly recursive function, under the pass name
/// "inlinerecursion": what -Rpass (accepted) and -Rpass-missed (refused) show,
/// and what optimisation records contain.  -Rpass-analysis adds the counts of
/// those that were costed, why the pass itself refused what the automatic
/// policy decided about in the end, and why that built something else than
/// copies for states where constants enter a function.
///
/// Where the user can do something about a refusal, the remark ends with it.
/// What a record holds beside the text: the growth, where the text does not say
/// it, as "Growth", what was built, in the language of plans, as "Plan", and
/// what the verdict has for records alone.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_REMARKS_H
#define INLINERECURSION_PLUGIN_TELL_REMARKS_H

#include "pass/InlineRecursion.h"
#include "plugin/tell/Verdict.h"

namespace llvm {
namespace inlinerecursion {

/// Does anybody listen, a user or a plan file?  Nothing is worked out for
/// remarks otherwise.
bool areRemarksEnabled(const Module &M);

/// Tells the counts that \p Costing is based on.
void emitAnalysis(InlineRecursion::InlineRecursionCosting &Costing);

/// Tells why the pass refused \p F, where that is not the last word about it.
void emitRefusalAnalysis(Function &F, const Verdict &V);

/// Tells why \p F got no copies for states, but those that were told about.
void emitNoStates(Function &F, const Verdict &Why);

/// Warns that the ring that the source of \p F asks for is not built, for the
/// reason in \p Why; does nothing if no source has asked.  A warning, as LLVM
/// gives it of a pragma for a loop that it does not follow (-Wpass-failed):
/// whoever asks wants to know without asking for remarks.
void warnAboutRequest(Function &F, const Verdict &Why);

/// Warns that the counts of \p F, which is the function \p Origin of the source
/// or a copy of it, were discarded.  A warning like LLVM's own of it (the name
/// of the source, -Wbackend-plugin), and a remark where LLVM says nothing:
/// inline functions differ between files by nature.
void tellDiscardedProfile(Function &F, StringRef Origin);

/// The same of the number of copies that the source of \p F asks for.
void warnAboutCopies(Function &F, const Verdict &Why);

/// The same of the plan that \p F has, from a file or its source.
void warnAboutPlan(Function &F, const Verdict &Why);

/// Warns that the plan in the source of \p F is none: \p Problem.
void warnAboutMalformedPlan(Function &F, StringRef Problem);

/// Warns about copies as above, and the request is over.
void refuseCopies(Function &F, const Verdict &Why);

/// Tells what was decided about \p F, at its location in the source, and has
/// it written down (Decisions.h).  \p IsPart: F is part of a function that was
/// told about, and counts as that.
void emitRemark(Function &F, const Verdict &V, bool IsPart = false);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_REMARKS_H
