//===- ExtendedCopy.h - A copy that takes more ------------------*- C++ -*-===//
//
/// \file
/// A copy of a function, for this module only, that is handed more than the
/// function is.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_EXTENDEDCOPY_H
#define INLINERECURSION_PLUGIN_IR_EXTENDEDCOPY_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/Transforms/Utils/ValueMapper.h"

namespace llvm {

class Function;
class StringRef;
class Type;

namespace inlinerecursion {

/// As many arguments as are passed in registers, on most targets (x86-64 and
/// those with more): a function is not handed more for the sake of speed.
constexpr unsigned MaxArguments = 6;

/// An internal copy of \p F, which takes no variable arguments, named like it
/// with \p Suffix.  Behind its arguments it takes some of the types \p More,
/// and uses none of them yet.  \p Copied leads from all that \p F consists of
/// to the copy's.  Calls of \p F in it are as they were.
Function &createExtendedCopy(Function &F, ArrayRef<Type *> More,
                             StringRef Suffix, ValueToValueMapTy &Copied);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_EXTENDEDCOPY_H
