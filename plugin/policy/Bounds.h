//===- Bounds.h - How far the automatic policy may go -----------*- C++ -*-===//
//
/// \file
/// The limits that a user sets, as options or as parameters of a pass.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_BOUNDS_H
#define INLINERECURSION_PLUGIN_POLICY_BOUNDS_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/StringRef.h"
#include <cstdint>

namespace llvm {

class Module;
class raw_ostream;

namespace inlinerecursion {

/// Limits of what is built, and where in the pipeline that is.
struct Bounds {
  /// Most copies in a chain, a ring or a chain of leaves.
  unsigned Copies;
  /// Most that one function grows by (instructions).
  unsigned FunctionGrowth;
  /// Is an inliner to come, which hands constants from copy to copy and makes
  /// nothing of some calls?
  bool InlinerFollows = false;
  /// Most that the module grows by, if its share of the module's size is not
  /// larger (instructions).
  unsigned ModuleGrowth = 0;
  /// Most that copies add that sources ask for, to a function and to the module
  /// (instructions).
  unsigned RequestedGrowth = 10000;
  /// Largest body of a ring (instructions).
  unsigned BodySize = 80;
  /// Has the linker the plugin, too, if one is to come that optimises?
  bool LeavesToLink = false;
  /// Most that the copies for states add to a module (instructions).
  unsigned StateGrowth = 0;
  /// Most copies in a ring that nobody asked for, beside the limit above.
  unsigned RingCopies = ~0u;
  /// Most that a function grows by that has a plan (instructions).
  unsigned PlannedGrowth = 100000;
};

/// What the options say, in front of the inliner.
Bounds getDefaultBounds();

/// The same below -O3, where a copy has to gain more for its size: a smaller
/// growth of each function, shorter rings, and smaller bodies.
Bounds getBoundsBelowO3();

/// What all copies together may add to \p M under \p Limits (instructions).
uint64_t findGrowthLimit(const Module &M, const Bounds &Limits);

/// Largest number of copies that anybody may ask for.  Plans are made copy by
/// copy.
constexpr unsigned MaxCopiesAtAll = 1000;

/// A limit as a parameter of a pass, `Name=N` with N from 0 to Most.
struct LimitParameter {
  StringLiteral Name;
  unsigned Bounds::*Field;
  unsigned Most;
};

/// Those that a pass takes, in the order in which they are printed.
ArrayRef<LimitParameter> getLimitParameters();

/// As parameters of a pass.
raw_ostream &operator<<(raw_ostream &OS, const Bounds &Limits);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_BOUNDS_H
