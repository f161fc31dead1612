//===- Ring.h - A ring that nobody asked for --------------------*- C++ -*-===//
//
/// \file
/// What the driver makes of a ring is completed here:
///
///   caller            caller
///     |                 |
///     v                 v
///     F <-+             F: the guard alone
///     |   |             |
///     +---+             |      F.recurse.guard <------+   (alwaysinline)
///                       v      v                      |
///                       F.recurse.clone               |   (noinline)
///                       |          |                  |
///                       v          |                  |
///                       F.recurse.clone.1             |   (alwaysinline)
///                       |        | |                  |
///                       |        v v                  |
///                       |  F.recurse.clone.2 ---------+   (alwaysinline)
///                       +-----------------------------+
///
/// All copies but the first are inlined, so one fused function is left.  Unlike
/// the rings that are requested, it is not inlined into those who enter it.  Of
/// the function itself its first test is left and a call of the ring.  That is
/// little, and the inliner merges it into those who call where that pays.  A
/// loop that makes the same call in every trip is better off without the test,
/// if the call can be made once in front of it (recursion/HoistableCalls.h).
/// Where there is no such test, the function keeps its body and enters the
/// ring, as those do who call it.  `invoke`, which the pass leaves alone, is
/// linked like `call`.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_RING_H
#define INLINERECURSION_PLUGIN_REWRITE_RING_H

#include "llvm/ADT/SmallPtrSet.h"

namespace llvm {

class Function;

namespace inlinerecursion {

class Driver;
struct Plan;

/// Builds the ring that \p Ring says of \p F, which \p Callers call.
void buildRing(Function &F, const Plan &Ring, Driver &D,
               const SmallPtrSetImpl<Function *> &Callers);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_RING_H
