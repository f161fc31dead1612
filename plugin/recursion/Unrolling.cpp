//===- Unrolling.cpp - Which loops the compiler unrolls -------------------===//

#include "plugin/recursion/Unrolling.h"
#include "host/RecursionDepthEstimator.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Support/CommandLine.h"
#include <algorithm>

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> UnrollLimit(
    "inlinerecursion-unroll-limit", cl::init(2000), cl::Hidden,
    cl::desc("Largest size, in instructions, to which a loop of constant trip "
             "count in a copy of a recursive function is unrolled; 0 leaves "
             "unrolling to the compiler"));

// Branches that an unrolled loop may hold.  A search for paths over a grid ran
// at its best with 84 of them and four times slower than rolled with 340; the
// bound lies between the two.  Branch prediction is the likely reason, but that
// has not been measured.
static constexpr unsigned MaxUnrolledBranches = 160;

bool llvm::inlinerecursion::isInShortLoop(const CallBase &Call,
                                          const LoopInfo &LI,
                                          ScalarEvolution &SE) {
  const Loop *L = LI.getLoopFor(Call.getParent());
  const unsigned Trips = L ? SE.getSmallConstantTripCount(L) : 0;
  return Trips > 1 && Trips <= RecursionDepthEstimator::MaxUnrolledTrips;
}

unsigned llvm::inlinerecursion::getLargestTripCount(const Loop &L,
                                                    ScalarEvolution &SE) {
  SmallVector<BasicBlock *, 4> ExitingBlocks;
  L.getExitingBlocks(ExitingBlocks);
  unsigned Least = 0;
  for (BasicBlock *BB : ExitingBlocks)
    if (unsigned Count = SE.getSmallConstantTripCount(&L, BB))
      Least = Least ? std::min(Least, Count) : Count;
  return Least;
}

namespace {
/// Instructions and branches in a loop.
struct LoopSize {
  uint64_t Instructions = 0;
  uint64_t Branches = 0;
};
} // namespace

static LoopSize measure(const Loop &L) {
  LoopSize Size;
  for (const BasicBlock *BB : L.blocks()) {
    Size.Instructions += BB->sizeWithoutDebug();
    Size.Branches += BB->getTerminator()->getNumSuccessors() > 1;
  }
  return Size;
}

/// Would a loop of \p Size stay within bounds, \p TripCount times in a row?
static bool staysSmall(LoopSize Size, uint64_t TripCount) {
  return Size.Instructions * TripCount <= UnrollLimit &&
         Size.Branches * TripCount <= MaxUnrolledBranches;
}

bool llvm::inlinerecursion::isWorthUnrolling(const Loop &L,
                                             uint64_t TripCount) {
  return staysSmall(measure(L), TripCount);
}

bool llvm::inlinerecursion::isLoopUnrolledInItself(const CallBase &Call,
                                                   const LoopInfo &LI,
                                                   ScalarEvolution &SE) {
  const Loop *L = LI.getLoopFor(Call.getParent());
  const unsigned Trips = SE.getSmallConstantTripCount(L);
  // Left at its top, it makes the last trip for the test only.
  const bool IsLeftAtTop = L->getHeader() != Call.getParent() &&
                           SE.getSmallConstantTripCount(L, L->getHeader());
  const uint64_t TripCount = Trips - IsLeftAtTop;
  if (!L->isInnermost() || TripCount < 2)
    return false;
  const LoopSize Trip = measure(*L);
  // Unrolled, the copy has no branch left that counts trips.
  return staysSmall({Trip.Instructions * TripCount,
                     Trip.Branches + (Trip.Branches - 1) * TripCount},
                    TripCount);
}
