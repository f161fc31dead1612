//===- ValueArguments.h - What is read through a pointer --------*- C++ -*-===//
//
/// \file
/// Fortran passes every argument by reference, and C++ often does: the next
/// activation's `row + 1` is stored to a variable of this one, and its address
/// is passed.  Nothing is known of a value behind a pointer, least of all by
/// what looks for constants, and every store in between may have changed it.
///
/// Where a recursive function only reads what its argument points to, and a
/// call passes a variable of the caller whose address goes nowhere else, nobody
/// can change the variable while the call lasts: it could as well be passed by
/// value.  LLVM's argument promotion does not see that (it asks whether a store
/// in the callee may write to the memory, without looking at the callers), and
/// does nothing at all with a function that is called from other files.
///
/// So a local function that takes the values is made of the body, and the calls
/// that pass such variables are led there; those in its own body are among
/// them, or nothing is done.  The function itself stays for all other calls,
/// known and unknown, and enters the local one when it calls itself:
///
///   BEFORE                      AFTER
///
///   fill(ptr row)  <--+         fill(ptr row)
///     store row+1, t  |           | row+1
///     fill(t) --------+           v
///                               fill.recurse.value(i32 row) <--+
///                                 |                             |
///                                 +------- row+1 ---------------+
///
/// What a call passes may also be constant memory, or, in the body, the
/// argument itself: in the local function, that is a value as well.  In the
/// function itself it is what somebody else has passed, who may pass null, or
/// the same memory twice, so that such a call stays as it is, unless attributes
/// rule that out.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_VALUEARGUMENTS_H
#define INLINERECURSION_PLUGIN_LITERAL_VALUEARGUMENTS_H

#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/Support/Alignment.h"
#include <cstdint>
#include <optional>

namespace llvm {

class CallBase;
class Function;
class Type;

namespace inlinerecursion {

/// Part of what a pointer argument points to.
struct ReadPart {
  /// In bytes from the pointer on, not negative.
  uint64_t Offset;
  Type *Ty;
  Align Alignment;
};

/// A pointer argument, and all that is read through it.
struct ReadArgument {
  unsigned Index;
  SmallVector<ReadPart, 4> Parts;
};

/// What is to be done with one function.
struct ValuePassing {
  /// Never empty, in the order of the arguments.
  SmallVector<ReadArgument, 2> Arguments;
  /// The calls, in the body and outside, that pass values from now on.  Those
  /// in the body of the local function do so anyway.
  SmallVector<CallBase *, 8> Calls;
};

/// For \p F, which has a body and calls itself; none if no argument may become
/// values.
std::optional<ValuePassing> findValuePassing(Function &F);

/// The functions that passValues() changed.
struct PassedValues {
  /// Takes values; local.
  Function *Local;
  SmallPtrSet<Function *, 8> Callers;
};

/// Makes the function that takes values, and leads the calls there.  \p F is
/// erased if nobody is left who calls it.
PassedValues passValues(Function &F, const ValuePassing &How);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_VALUEARGUMENTS_H
