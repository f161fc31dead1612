//===- DiscardedProfiles.h - Profiles of another shape ----------*- C++ -*-===//
//
/// \file
/// Copies are made in front of -fprofile-generate and -fprofile-use, which see
/// them as functions of their own.  A profile belongs to a function as it was
/// when it was instrumented, and another -O level builds other copies:
///
///   -O2 -fprofile-generate    F.recurse.clone, 2 bodies in it    hash 1
///                                                                  |
///   -O3 -fprofile-use         F.recurse.clone, 4 bodies in it    hash 2
///                                                        the counts are gone
///
/// LLVM discards such counts and leaves an annotation on the function.  What it
/// says names the copy and two hashes, and not what to do.  This pass does,
/// once for each function that calls itself or has copies.  It stands behind
/// the inliner, at the first place of the plugin behind LLVM's reading of
/// profiles; what has been inlined everywhere by then is not told.
///
/// It repairs nothing: with the counts gone there is nothing to divide.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LEGALITY_DISCARDEDPROFILES_H
#define INLINERECURSION_PLUGIN_LEGALITY_DISCARDEDPROFILES_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class DiscardedProfilesPass : public PassInfoMixin<DiscardedProfilesPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  static StringRef name() { return "InlineRecursionDiscardedProfilesPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LEGALITY_DISCARDEDPROFILES_H
