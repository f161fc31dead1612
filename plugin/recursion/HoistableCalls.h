//===- HoistableCalls.h - Calls that a loop makes once ----------*- C++ -*-===//
//
/// \file
/// A recursion that writes nothing gives the same result in every trip of a
/// loop that hands it the same arguments and writes nothing either, and
/// loop-invariant code motion (LICM.cpp) makes the call once, in front of the
/// loop:
///
///   for (i = 0; i < n; i++)          d = depth(tree);
///     sum += a[i] * depth(tree);     for (i = 0; i < n; i++)
///                                      sum += a[i] * d;
///
/// It takes a call only that is made in every trip.  One that stands behind a
/// test is none, not even where the test is the same in every trip: what
/// unswitches such a loop runs at -O3 alone.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_HOISTABLECALLS_H
#define INLINERECURSION_PLUGIN_RECURSION_HOISTABLECALLS_H

#include "llvm/ADT/SmallVector.h"

namespace llvm {

class CallInst;
class Function;

namespace inlinerecursion {

/// Does \p F do nothing but read, compute, call itself and call what does the
/// same?
bool onlyReads(const Function &F);

/// The calls of \p F from other functions in a loop that hands them the same
/// arguments in every trip.  Where a function does nothing but call \p F, and
/// will be inlined, they are the calls of that function.
SmallVector<CallInst *, 4> findHoistableCalls(Function &F);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_HOISTABLECALLS_H
