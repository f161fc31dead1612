//===- FusedSize.h - How large copies become in each other ------*- C++ -*-===//
//
/// \file
/// The size of the first copy once the others are inlined into it.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_FUSEDSIZE_H
#define INLINERECURSION_PLUGIN_POLICY_FUSEDSIZE_H

#include <cstdint>

namespace llvm {
namespace inlinerecursion {

struct Bounds;

/// Bodies and instructions in a function that copies are merged into.
struct FusedSize {
  uint64_t Bodies = 0;
  uint64_t Instructions = 0;

  /// Does it stay within what \p Limits allow a function to grow by, and its
  /// frame within what a frame may take, if each body has variables of
  /// \p FrameSize bytes?
  bool fits(const Bounds &Limits, uint64_t FrameSize) const;

  FusedSize &operator+=(const FusedSize &Other) {
    Bodies += Other.Bodies;
    Instructions += Other.Instructions;
    return *this;
  }
};

/// The size of the first of \p Copies copies of a body with \p SelfCalls self
/// calls.  Behind the last copy a call is left and \p GuardSize instructions.
/// \p Staggered: the second and later calls of a body lead to the copy after
/// the next.
FusedSize estimateFusedSize(unsigned BodySize, unsigned SelfCalls,
                            unsigned GuardSize, unsigned Copies,
                            bool Staggered);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_FUSEDSIZE_H
