//===- Tuning.h - The numbers that the policy was tuned to ------*- C++ -*-===//
//
/// \file
/// Where a shape stops to pay was found by measurement.  Each number here names
/// what it counts, why there is a limit at all, and the kernel of
/// benchmarks/kernels whose figures in docs/results/report.md show it, if one
/// does.  Sizes are in instructions as LLVM counts them, debug information left
/// out.
///
/// Limits that keep a program correct or a compilation short are not here:
/// those are options (docs/reference.md).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_TUNING_H
#define INLINERECURSION_PLUGIN_POLICY_TUNING_H

#include <cstdint>

namespace llvm {
namespace inlinerecursion {
namespace tuning {

//===----------------------------------------------------------------------===//
// What a function may look like
//===----------------------------------------------------------------------===//

/// Largest guard (instructions).  A larger one costs as much as the call that
/// it saves.
constexpr unsigned MaxGuardSize = 30;

/// Largest body of a ring without a guard (instructions): activations that end
/// at once have to be cheap.  Kernels: parser gains, puzzle9 does not.
constexpr unsigned MaxUnguardedSize = 60;

/// Most self calls of a ring.  Of more, most exclude each other (the cases of a
/// switch), and copies of all of them only spread the branches.  Kernel:
/// exprtree.
constexpr unsigned MaxSelfCalls = 4;

/// Most instructions for each self call where a function with more of them is
/// split: leaves have to be a large part of it.  Kernel: exprtree.
constexpr unsigned MaxSizePerCall = 15;

/// Most other calls for each self call.  With more, the time goes into those.
constexpr unsigned MaxOtherCalls = 1;

//===----------------------------------------------------------------------===//
// Copies for states
//===----------------------------------------------------------------------===//

/// Smallest part of the time of an activation that known arguments have to save
/// (percent).
constexpr unsigned MinStatesSaved = 10;

//===----------------------------------------------------------------------===//
// How many copies
//===----------------------------------------------------------------------===//

/// Most copies of a body with one or two self calls.  Five save four calls of
/// five, and with two calls they are twelve bodies.  Kernel: bintree.
constexpr unsigned MaxCopiesOfFewCalls = 5;

/// Most copies where equal calls merge.  Of the sixteen calls that close such a
/// ring of two self calls, five differ where they are as deep as each other; a
/// fifth copy doubles the bodies that they are found in.  Kernels: fib,
/// triangle, depth_unknown.
constexpr unsigned MaxCopiesToMerge = 4;

/// Most copies of a path, where no activation makes more than one of several
/// calls: of all that copies are multiplied by, only that path is run.  Kernel:
/// listmerge.
constexpr unsigned MaxCopiesOfPath = 4;
/// The same with a loop around one of the calls.  Kernel: matcher.
constexpr unsigned MaxCopiesOfPathWithLoop = 2;

/// Most copies where a loop stands around the only self call.  A copy in it is
/// a loop in a loop, and each needs registers.  One more where there are
/// several self calls.  No kernel shows the number: a search for paths that is
/// not among them gained most with two copies, and less with three and with
/// four.
constexpr unsigned MaxCopiesInLoop = 3;

/// The same where the loop makes few trips, and a known number of them.  It is
/// unrolled and gone in each copy; a third copy would be unrolled in every trip
/// of every trip.  Kernel: knight.
constexpr unsigned MaxCopiesInUnrolledLoop = 2;

/// Most copies in the loop that a tail call has become.  It takes nothing but
/// registers to keep it going.  Kernels: ackermann, narytree.
constexpr unsigned MaxCopiesInTailLoop = 9;
/// Most values that such a loop carries, where copies are a tree of bodies, and
/// where they are a row of them.
constexpr unsigned MaxValuesInTailLoop = 2;
constexpr unsigned MaxValuesAtOneCall = 3;
/// Most values that all copies of such a loop keep together while the innermost
/// one runs; there are not many more registers.  Kernel: subsetsum.
constexpr unsigned MaxKeptValues = 10;

/// Most arguments that change at calls where bodies are a tree.  More take all
/// registers.
constexpr unsigned MaxSteppedInTree = 2;

/// Most copies beside a call that stays one, which takes its time in each.
/// Kernel: bintree, which is built and given back node by node.
constexpr unsigned MaxCopiesBesideCalls = 3;

/// Most short loops in each other where constants fold less than one part in
/// LittleShare of the body.  Kernels: assignment and queens fold less.
constexpr unsigned MaxShortLoops = 7;
constexpr unsigned LittleShare = 4;

/// Fewest levels of leaves that are worth a test of their own.
constexpr unsigned MinLeafLevels = 2;

/// Largest frame of a function that others are merged into (bytes).
constexpr uint64_t MaxFusedFrame = 1024;

} // namespace tuning
} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_TUNING_H
