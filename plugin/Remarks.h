//===- Remarks.h - What the pass did, told to the user ----------*- C++ -*-===//
//
/// \file
/// The pass is silent, so what it did is read off the module afterwards.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REMARKS_H
#define INLINERECURSION_PLUGIN_REMARKS_H

#include "llvm/ADT/ArrayRef.h"
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

/// Stands on the stack around one run of the pass over one module: remembers
/// where the module ended before, and finds the copies behind that point.
class RemarkRecorder {
public:
  explicit RemarkRecorder(Module &M);

  /// The chains that were built since construction, in the order of building.
  /// Functions without a name are left out: their copies cannot be told apart.
  SmallVector<CloneChain, 0> findChains() const;

  /// Emits a remark "Chained" for every chain, at the function's location.
  void emit() const;

private:
  Module &M;
  /// Null if the module was empty.
  Function *LastBefore;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REMARKS_H
