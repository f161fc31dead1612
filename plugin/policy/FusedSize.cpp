//===- FusedSize.cpp - How large copies become in each other --------------===//

#include "plugin/policy/FusedSize.h"
#include "plugin/policy/Bounds.h"
#include "plugin/policy/Tuning.h"
#include "llvm/ADT/SmallVector.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

bool FusedSize::fits(const Bounds &Limits, uint64_t FrameSize) const {
  return Instructions <= Limits.FunctionGrowth &&
         Bodies * FrameSize <= tuning::MaxFusedFrame;
}

FusedSize llvm::inlinerecursion::estimateFusedSize(unsigned BodySize,
                                                   unsigned SelfCalls,
                                                   unsigned GuardSize,
                                                   unsigned Copies,
                                                   bool Staggered) {
  // Of what a call of copy K becomes, K = Copies and behind being the guard.
  SmallVector<FusedSize, 8> Sizes(Copies + 2, {0, GuardSize});
  for (unsigned K = Copies; K-- != 0;) {
    Sizes[K] = {1, BodySize};
    for (unsigned Call = 0; Call != SelfCalls; ++Call)
      Sizes[K] += Sizes[K + 1 + (Staggered && Call > 0)];
  }
  return Sizes.front();
}
