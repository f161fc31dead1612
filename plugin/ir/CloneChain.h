//===- CloneChain.h - The chains that a run has built -----------*- C++ -*-===//
//
/// \file
/// The pass keeps no record of its copies, so they are read off the module.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_CLONECHAIN_H
#define INLINERECURSION_PLUGIN_IR_CLONECHAIN_H

#include "llvm/ADT/SmallVector.h"

namespace llvm {

class Function;
class Module;

namespace inlinerecursion {

/// The copies that one run made of one function.
struct CloneChain {
  Function *Origin;
  /// In the order of the links, never empty.
  SmallVector<Function *, 8> Copies;

  /// Does the last copy call the first one, rather than the origin?
  bool isRing() const;
};

/// The chains whose copies stand behind \p LastBefore, the last function of
/// \p M before the run (not null), in the order of building.  Functions without
/// a name are left out: nothing tells their copies apart.
SmallVector<CloneChain, 0> findChains(Module &M, Function *LastBefore);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_CLONECHAIN_H
