//===- PlanSpec.h - The language that plans are written in ------*- C++ -*-===//
//
/// \file
/// What is to become of one recursive function, in words.  Plan files, sources,
/// remarks and tests all say it in the same way: a shape, and behind it what is
/// known of its numbers.
///
///   none
///   chain copies=7
///   ring copies=4 guard staggered no-pass-sum loop-first
///   leaves levels=6,3
///   split
///   states arguments=1,3
///   ring copies=9 rules
///
/// What is not said is for the automatic policy to decide.  What is printed of
/// a plan that was made says everything, so that it makes the same again.
///
/// `rules`: the pass itself decides by the rules of its level, and has decided
/// so.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_PLANSPEC_H
#define INLINERECURSION_PLUGIN_PLAN_PLANSPEC_H

#include "llvm/ADT/SmallVector.h"
#include "llvm/ADT/StringRef.h"
#include "llvm/Support/Error.h"
#include <optional>
#include <string>

namespace llvm {
namespace inlinerecursion {

struct PlanSpec {
  /// `pass-sum`, `loop-first`, `levels` and so on belong to some shapes only.
  enum Shape { None, Chain, Ring, Leaves, Split, States };

  Shape Kind = None;
  /// Of a chain 1 to 1000, of a ring 2 to 1000.
  std::optional<unsigned> Copies;
  /// In front of the calls that close a ring: the test that ends the recursion?
  std::optional<bool> Guard;
  /// In a ring: do second and later self calls skip a copy?
  std::optional<bool> Staggered;
  /// First of all: is the sum handed on from call to call?
  std::optional<bool> PassSum;
  /// First of all: do tail calls become loops?
  std::optional<bool> LoopFirst;
  /// How many levels above the last activation leaves are entered, 2 to 999, in
  /// descending order; empty if that is not said.
  SmallVector<unsigned, 2> Levels;
  /// The arguments that states are of, counted from 1, in ascending order;
  /// empty if that is not said.
  SmallVector<unsigned, 4> Arguments;
  /// Built by the rules of the level; for chains and rings.
  bool ByRules = false;

  PlanSpec() = default;
  explicit PlanSpec(Shape Kind) : Kind(Kind) {}

  /// Reads \p Text.  The error says what is wrong and what there is instead.
  static Expected<PlanSpec> parse(StringRef Text);

  /// As parse() reads it.
  std::string str() const;
};

/// Most copies that anybody may ask for, in words or numbers.
constexpr unsigned MaxPlannedCopies = 1000;

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_PLANSPEC_H
