//===- Names.h - The words by which copies are known ------------*- C++ -*-===//
//
/// \file
/// The attributes by which the pass, its collaborators and whatever a compiler
/// puts around them tell functions apart, and what copies are called.  All of
/// them are part of the interface: they stand in modules that are written to
/// disk and read by another run.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_NAMES_H
#define INLINERECURSION_HOST_NAMES_H

#include "llvm/ADT/StringRef.h"

namespace llvm {
namespace inlinerecursion {

/// On a function that copies were made of, and on the copies: the pass does not
/// look at it (again).
constexpr StringLiteral CloneMark = "llvm.recurse.clone";

/// Behind the name of a function, and in front of LLVM's number, in the names
/// of its copies.
constexpr StringLiteral CloneSuffix = ".recurse.clone";

/// The same for the copies that its constants are put into.
constexpr StringLiteral SpecializedSuffix = ".specialized";

/// On a function that asks for a ring, and on its copies.
constexpr StringLiteral Request = "specialize-inline-recursion-function";

/// The value of Request where the source does not ask for a ring.
constexpr StringLiteral FoundRequest = "found";

/// On a function whose request the pass has granted, and on its copies.
constexpr StringLiteral EligibleMark =
    "specialize-inline-recursion-function-eligible";

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_HOST_NAMES_H
