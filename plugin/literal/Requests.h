//===- Requests.h - Who asks for a ring -------------------------*- C++ -*-===//
//
/// \file
/// The first pass of the plugin's way: turns requests for a ring into the
/// function attribute "specialize-inline-recursion-function" that the pass
/// looks for.
///
/// A request in the source is an annotation of the same text, which clang
/// records in the global `llvm.global.annotations`; the record stays as it is.
/// The wish for no copies at all ("inlinerecursion-none") comes the same way.
/// Requests can also be found: directly recursive functions that the pass would
/// accept if they asked, unless the source wishes for no copies (see
/// Protection.h), a self call stands in a loop that the compiler unrolls, there
/// are several self calls and the copies could not be aligned (see
/// RingAlignment.h), or the copies would be too large. The attribute's value
/// (FoundRequest) tells the two apart.
///
/// A number of copies ("inlinerecursion-copies") is asked for the same way, as
/// the annotation's value.  It is for the automatic policy to grant, and no
/// ring is found for such a function.
///
/// A request is withdrawn, with a remark, in three cases:
///
///   - `return n + f(n - 1)` and the like.  Left alone, the compiler turns such
///     a recursion into a loop with an accumulator; in a ring it keeps using
///     stack, and a program that recurses millions of times would run out of
///     it.
///   - The copies could not be aligned (as many of them as the remainder has
///     values, see RefusedRequests.h), and a self call stands in a loop that
///     the compiler unrolls.
///   - The copies could not be aligned, there are more than two self calls, and
///     no constant enters from outside: such a ring is slower than the function
///     (kernel: domino).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_REQUESTS_H
#define INLINERECURSION_PLUGIN_LITERAL_REQUESTS_H

#include "llvm/ADT/StringRef.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Is `inlinerecursion-find-requests` given on the command line?
bool isFindingRequestsEnabled();

/// Marks the functions of a module that ask for a ring.  Changes nothing but
/// function attributes.
class RequestsPass : public PassInfoMixin<RequestsPass> {
public:
  /// With \p FindRequests, functions that would be accepted need not ask.
  /// With \p GrantsCopies, somebody comes who grants numbers of copies;
  /// otherwise they are refused.
  explicit RequestsPass(bool FindRequests, bool GrantsCopies = true)
      : FindRequests(FindRequests), GrantsCopies(GrantsCopies) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionRequestsPass"; }

private:
  bool FindRequests;
  bool GrantsCopies;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_REQUESTS_H
