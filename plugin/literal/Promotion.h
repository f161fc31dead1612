//===- Promotion.h - Arguments passed by reference --------------*- C++ -*-===//
//
/// \file
/// Fortran passes arguments by reference, and so do some C programs: the pass
/// then sees a pointer where it looks for a number.  For local functions,
/// LLVM's argument promotion turns the pointer into the number it points to,
/// but in a default pipeline it runs behind the inliner, too late for us.
///
/// This pass runs it early, with what it depends on (inferred attributes, and
/// SROA behind it for the variables that are no longer passed), on modules that
/// have a local recursive function with a pointer argument, and on no others.
/// Fortran's functions become local at link time, under full LTO.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_PROMOTION_H
#define INLINERECURSION_PLUGIN_LITERAL_PROMOTION_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class PromotionPass : public PassInfoMixin<PromotionPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  // It runs passes of its own.  LLVM times one pass at a time and leaves out
  // those whose name ends like this (PassTimingInfo.cpp).
  static StringRef name() { return "InlineRecursionPromotionPassAdaptor"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_PROMOTION_H
