//===- Build.h - What a plan says, done -------------------------*- C++ -*-===//
//
/// \file
/// Copies are made by the pass's own transformation; what it leaves open is
/// completed by one file for each shape.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_BUILD_H
#define INLINERECURSION_PLUGIN_REWRITE_BUILD_H

#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/ADT/SmallVector.h"

namespace llvm {

class Function;

namespace inlinerecursion {

class Driver;
struct Plan;

/// What has become of a function.
struct Built {
  /// The functions that were there before and call something else now.
  SmallPtrSet<Function *, 8> Changed;
  /// What a split has left, to be asked about in turn; else null.
  Function *Rest = nullptr;
  /// The copies for states that call themselves, to be asked about in turn.
  SmallVector<Function *, 4> Copies;
  /// All other copies for states.
  SmallVector<Function *, 4> OtherCopies;
};

/// Builds what \p What says of \p F, for which it was made.
Built build(Function &F, const Plan &What, Driver &D);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_BUILD_H
