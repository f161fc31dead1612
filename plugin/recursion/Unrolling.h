//===- Unrolling.h - Which loops the compiler unrolls -----------*- C++ -*-===//
//
/// \file
/// What full unrolling will make of a loop, foretold.  Asked on three
/// occasions, each of which knows more than the one before:
///
///  - Before anything is built: will the loop around a self call be gone?  Few
///    trips tell, a number that the depth estimator shares
///    (RecursionDepthEstimator::MaxUnrolledTrips).
///  - Before a copy is put into such a loop: will it be gone even then?  An
///    estimate, as the copy is simplified before the loop is unrolled.
///  - Before full unrolling, on the loop as it is: shall it be asked for
///    (loops/LoopHints.h)?  The size counts then, and its branches.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_UNROLLING_H
#define INLINERECURSION_PLUGIN_RECURSION_UNROLLING_H

#include <cstdint>

namespace llvm {

class CallBase;
class Loop;
class LoopInfo;
class ScalarEvolution;

namespace inlinerecursion {

/// Does \p Call stand in a loop of so few trips, and a known number of them,
/// that the compiler unrolls it as long as it is small?
bool isInShortLoop(const CallBase &Call, const LoopInfo &LI,
                   ScalarEvolution &SE);

/// Is the loop around \p Call, a short one, unrolled even with a copy of all
/// its trips in each trip?
bool isLoopUnrolledInItself(const CallBase &Call, const LoopInfo &LI,
                            ScalarEvolution &SE);

/// The number of trips that \p L makes unless it is left early by an exit that
/// does not count them; 0 if no exit does.
unsigned getLargestTripCount(const Loop &L, ScalarEvolution &SE);

/// Is \p L worth \p TripCount copies of its body in a row?  Up to
/// `inlinerecursion-unroll-limit` instructions it is, unless too many branches
/// are among them.
bool isWorthUnrolling(const Loop &L, uint64_t TripCount);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_UNROLLING_H
