//===- BodyComparison.h - Do two functions do the same? ---------*- C++ -*-===//
//
/// \file
/// Copies of one function are told by their names, which a linker may change,
/// and by what they do, which it may not.  Two bodies are the same if they are,
/// instruction by instruction, the same operation on the same operands, but for
/// which one of a group a call calls.  Debug information is left out of it: it
/// must not change the code.
///
/// LLVM's FunctionComparator orders functions to merge them, and knows of no
/// group.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_BODYCOMPARISON_H
#define INLINERECURSION_HOST_BODYCOMPARISON_H

#include "llvm/ADT/STLFunctionalExtras.h"

namespace llvm {

class Function;

namespace inlinerecursion {

enum class BodyComparison {
  /// Also what the functions promise and how they are called (but for whether
  /// they are inlined), and the metadata of instructions: either may take the
  /// place of the other.
  Exact,
  /// A copy that the pass has just made, and its origin.  The pass makes calls
  /// from copy to copy anew, without their attributes, and nothing is replaced.
  AsCopied,
};

/// Do \p A and \p B do the same, if those functions do for which \p IsAlike
/// holds?
bool haveSameBody(const Function &A, const Function &B,
                  function_ref<bool(const Function &)> IsAlike,
                  BodyComparison Kind);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_HOST_BODYCOMPARISON_H
