//===- RingAlignment.h - A copy for each remainder --------------*- C++ -*-===//
//
/// \file
/// The pass builds a ring of as many copies as a remainder has values, but it
/// enters all of them at the first copy, whatever the remainder is, so none of
/// the copies knows it.  Where all self calls step by constants, they can:
///
///   run(n):  switch (n % 3) ...  run(n - 1)
///
///                 n % 3 = 2      n % 3 = 1      n % 3 = 0
///   entry ------> copy 0 ------> copy 1 ------> copy 2 ----> entry
///     | otherwise
///     v
///     run ------> entry
///
/// Copies are entered with arguments that are not negative and have their
/// remainder.  The entry sees to that: what does not fit any of the copies that
/// are functions of their own goes one step on in the function itself.  Within
/// the ring it follows from the steps.  Downwards, from remainder r, at least r
/// is left, and only the step down past zero asks the entry.  Upwards, a step
/// of signed values that would overflow is poison and may do anything.  Where
/// they wrap, and where they are unsigned (half of those are negative here),
/// only a step from the last values below the largest number can leave the
/// ring.  That is done in the copies of their remainders, one in most rings,
/// and there a test stands in front of the call, which goes on in the function
/// itself.
///
/// In each copy the remainder is a constant then, and so is what depends on it:
/// the case of a switch, the address of a table's element.  Kernel: machine.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_RINGALIGNMENT_H
#define INLINERECURSION_PLUGIN_LITERAL_RINGALIGNMENT_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include <optional>

namespace llvm {

class Function;
class Instruction;

namespace inlinerecursion {

struct CloneChain;

/// What the copies of a ring are to stand for.
struct RingAlignment {
  /// The argument that the remainder is taken of.
  unsigned ArgNo;
  /// At least 2.
  unsigned Divisor;
  /// Do the steps lead down?  The first copy then stands for the largest
  /// remainder, otherwise for 0.
  bool Downwards;
  /// Is the remainder one of unsigned values by a power of two?  It steps along
  /// where they wrap then, and no argument is negative.
  bool MayWrap;

  /// The remainder that copy \p K stands for, out of [0, Divisor).
  unsigned getRemainder(unsigned K) const {
    return Downwards ? Divisor - 1 - K : K;
  }
  /// The copy that stands for \p Remainder.
  unsigned getCopy(unsigned Remainder) const {
    return Downwards ? Divisor - 1 - Remainder : Remainder;
  }

  bool operator==(const RingAlignment &Other) const {
    return ArgNo == Other.ArgNo && Divisor == Other.Divisor &&
           Downwards == Other.Downwards && MayWrap == Other.MayWrap;
  }
};

/// The largest divisor whose remainders get a copy each where the source asks
/// for a ring.
constexpr unsigned MaxRemainders = 64;

/// The remainders of arguments of \p F by constants from 2 to \p Most that its
/// entry block takes, the largest divisor first.
SmallVector<const Instruction *, 2> findRemainders(const Function &F,
                                                   unsigned Most);

/// How at most \p Count copies of \p F, which calls one of \p Links where it
/// calls itself, can be aligned; nothing where such a call does not step by a
/// constant.
std::optional<RingAlignment>
findAlignment(Function &F, ArrayRef<Function *> Links, unsigned Count);

/// How \p Ring, as it has just been built, can be aligned if it may have at
/// most \p Most copies; nothing also where nobody enters it, or where the
/// copies are not alike.  Copies that are aligned must not be asked about
/// again: they are not alike any more.
std::optional<RingAlignment> findAlignment(const CloneChain &Ring,
                                           unsigned Most);

/// Makes the remainder a constant in each copy of \p Ring, and lets them call
/// each other accordingly.  Copies that are missing are made, and those that
/// stand for nothing are erased.  Who calls one from outside calls the origin
/// again, until enterAlignedRing is called.
void alignRing(CloneChain &Ring, const RingAlignment &Alignment);

/// Lets all calls of the origin of \p Ring, its own included, enter the ring at
/// the copy of their remainder.  Only copies that are not inlined can be
/// entered; there has to be at least one.  Where a step leads past zero,
/// alignRing has linked it to the copy behind the last one; that step enters
/// the ring anew.
void enterAlignedRing(const CloneChain &Ring, const RingAlignment &Alignment);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_RINGALIGNMENT_H
