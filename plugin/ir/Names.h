//===- Names.h - Attributes, suffixes and names of passes -------*- C++ -*-===//
//
/// \file
/// What the plugin writes into a module to know a function again, and what its
/// passes are called.  The words that it shares with the pass are in
/// host/Names.h.
///
/// Marks are function attributes.  Those that only one file writes and reads
/// stand there all the same: what a module can carry is to be seen at one
/// glance.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_NAMES_H
#define INLINERECURSION_PLUGIN_IR_NAMES_H

#include "host/Names.h"
#include "llvm/IR/Function.h"

namespace llvm {
namespace inlinerecursion {

//===----------------------------------------------------------------------===//
// Marks
//===----------------------------------------------------------------------===//

/// The source wants no copies of it.  Stays.
constexpr StringLiteral NoneMark = "inlinerecursion-none";

/// The source wants so many copies of it, by the automatic policy; the value is
/// the number.  Until that is granted or refused.
constexpr StringLiteral CopiesMark = "inlinerecursion-copies";

/// The plan for it in front of the inliner, or in the look that is being taken;
/// the value is the plan in words and, on a second line, where it stands
/// (plan/Planned.h).  Until it is followed or refused.
constexpr StringLiteral PlanMark = "inlinerecursion-plan";

/// The same for the look behind the inliner.  Until then.
constexpr StringLiteral LatePlanMark = "inlinerecursion-plan-late";

/// The value is the hash of its body as it entered the pipeline, or that of the
/// function it is a copy of.  Only where plans are obeyed or written; until
/// they are.
constexpr StringLiteral BodyMark = "inlinerecursion-body";

/// The ring that the source asks for cannot be built; the value says why, as
/// that of UndecidedMark.  Until the automatic policy has decided about it.
constexpr StringLiteral RefusedMark = "inlinerecursion-refused";

/// Kept away from the pass; the value names the reason.  Until behind the pass.
constexpr StringLiteral ProtectedMark = "inlinerecursion-protected";

/// Copies may be made of it, and share its entry count; the value is its name.
/// Until behind the pass.
constexpr StringLiteral OriginMark = "inlinerecursion-origin";

/// A copy in a ring whose inlining is planned.  Stays.
constexpr StringLiteral PlannedMark = "inlinerecursion-planned";

/// The copy that others are merged into, in a ring that was built to merge
/// equal calls (loops/MergedCalls.h).  Stays.
constexpr StringLiteral MergesMark = "inlinerecursion-merges";

/// A copy for one state of its arguments (rewrite/StateCopies.h).  Stays.
constexpr StringLiteral StateMark = "inlinerecursion-state";

/// The automatic policy looked at it in front of the inliner.  Until behind the
/// second look.
constexpr StringLiteral SeenMark = "inlinerecursion-seen";

/// The automatic policy has refused it for a reason that may go away, and tells
/// behind the second look only; the value is the name of the reason, behind a
/// space the reason in words, and on a second line the remedy.  Until then.
constexpr StringLiteral UndecidedMark = "inlinerecursion-undecided";

/// The user was told that its profile was discarded.  Stays.
constexpr StringLiteral ProfileToldMark = "inlinerecursion-profile-told";

/// On loops around calls from copy to copy, as metadata.  Stays.
constexpr StringLiteral ChainLoopMark = "llvm.loop.inlinerecursion.chain";

/// On modules, as named metadata without operands: plans are obeyed or written,
/// or stand in the source.  Until they are.
constexpr StringLiteral PlansMark = "inlinerecursion.plans";

/// The decisions about the functions of a module, as named metadata, while they
/// are collected for the summary.  Only where remarks are wanted; until the
/// summary is told.
constexpr StringLiteral DecisionsMark = "inlinerecursion.decisions";

/// On modules, as a flag: a compile step has left rings to the linker.  Stays.
constexpr StringLiteral LeftMark = "inlinerecursion-left-to-link";

/// On modules, as a flag: the plugin was there in a compile step, and a link
/// step is to come.  Stays.
constexpr StringLiteral CompiledMark = "inlinerecursion-compiled";

/// Does the source of \p F ask for a ring, or do its copies stand in one that
/// was asked for?
inline bool asksForRing(const Function &F) {
  return F.hasFnAttribute(Request) &&
         F.getFnAttribute(Request).getValueAsString() != FoundRequest;
}

/// Is \p F a copy, or were copies made of it?  While the protection lasts, also
/// whatever is kept away from the pass.
inline bool hasCloneMark(const Function &F) {
  return F.hasFnAttribute(CloneMark);
}

//===----------------------------------------------------------------------===//
// Behind the names of functions
//===----------------------------------------------------------------------===//

/// What all of these begin with, and the names of copies.
constexpr StringLiteral PluginSuffix = ".recurse.";
/// A function that makes the test of another one and calls it if need be.
constexpr StringLiteral GuardSuffix = ".recurse.guard";
/// What is left of a function behind the work up to its test.
constexpr StringLiteral RestSuffix = ".recurse.rest";
/// A function that leads a step to a copy of an aligned ring, unless it has
/// overflowed.
constexpr StringLiteral StepSuffix = ".recurse.step";
/// A function that is handed the sum so far.
constexpr StringLiteral SumSuffix = ".recurse.sum";
/// A function that is passed what another one reads through pointers.
constexpr StringLiteral ValueSuffix = ".recurse.value";
/// The body of a function while another is tried in its place.
constexpr StringLiteral SavedSuffix = ".recurse.saved";
/// The entry of an aligned ring, which looks for the copy.
constexpr StringLiteral EntrySuffix = ".recurse.entry";

//===----------------------------------------------------------------------===//
// Passes
//===----------------------------------------------------------------------===//

/// The pass itself, and the pass of all remarks (-Rpass=inlinerecursion).
constexpr StringLiteral PassName = "inlinerecursion";
constexpr StringLiteral AutoName = "inlinerecursion-auto";
constexpr StringLiteral BehindInlinerName = "inlinerecursion-behind-inliner";
constexpr StringLiteral CallRepairName = "inlinerecursion-repair";
constexpr StringLiteral ChainLoopsName = "inlinerecursion-chain-loops";
constexpr StringLiteral CutRecurrencesName = "inlinerecursion-cut-recurrences";
constexpr StringLiteral DiscardedProfilesName =
    "inlinerecursion-discarded-profiles";
constexpr StringLiteral EarlySumsName = "inlinerecursion-early-sums";
constexpr StringLiteral LoopHintsName = "inlinerecursion-loop-hints";
constexpr StringLiteral LTOMarkerName = "inlinerecursion-lto-marker";
constexpr StringLiteral MergedCallsName = "inlinerecursion-merged-calls";
constexpr StringLiteral PipelineName = "inlinerecursion-pipeline";
constexpr StringLiteral PlansName = "inlinerecursion-plans";
constexpr StringLiteral PrinterName = "print<inlinerecursion>";
constexpr StringLiteral PromotionName = "inlinerecursion-promotion";
constexpr StringLiteral ProtectionName = "inlinerecursion-protect";
constexpr StringLiteral RequestsName = "inlinerecursion-requests";
constexpr StringLiteral RingInliningName = "inlinerecursion-ring-inlining";
constexpr StringLiteral SummaryName = "inlinerecursion-summary";

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_NAMES_H
