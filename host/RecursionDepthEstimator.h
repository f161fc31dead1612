//===- RecursionDepthEstimator.h - How deep does it recurse? ----*- C++ -*-===//
#ifndef INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H
#define INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include <utility>

namespace llvm {

class CallInst;
class DominatorTree;
class Function;
class SCEV;
class ScalarEvolution;

/// Estimates how many activations of a recursive function one entry makes.
class RecursionDepthEstimator {
public:
  /// \p F and \p SE are not null; \p DT may be.
  RecursionDepthEstimator(Function *F, ScalarEvolution *SE, DominatorTree *DT)
      : F(F), SE(SE), DT(DT) {}

  /// Can F be judged at all?  When true, getCallSites() is filled.
  bool canEstimateRecursionDepth();

  /// The recursive call sites of F, in layout order.
  ArrayRef<CallInst *> getCallSites() const { return CallSites; }

  /// The (shallowest, deepest) number of activations of F before \p Call is no
  /// longer reached; null where that is not a known constant.
  std::pair<const SCEV *, const SCEV *>
  identifyRecursionDepthForCallSite(CallInst *Call);

private:
  Function *F;
  ScalarEvolution *SE;
  DominatorTree *DT;
  SmallVector<CallInst *, 2> CallSites;
};

} // namespace llvm

#endif // INLINERECURSION_HOST_RECURSIONDEPTHESTIMATOR_H
