//===- RecursionDepthEstimator.cpp - How deep does it recurse? ------------===//
#include "RecursionDepthEstimator.h"

using namespace llvm;

bool RecursionDepthEstimator::canEstimateRecursionDepth() { return false; }

std::pair<const SCEV *, const SCEV *>
RecursionDepthEstimator::identifyRecursionDepthForCallSite(CallInst *) {
  return {nullptr, nullptr};
}
