//===- CallGuard.h - The test that ends a recursion -------------*- C++ -*-===//
//
/// \file
/// Half of all activations of a binary recursion, and three quarters of some,
/// return at once: a leaf, an empty range, a cell that was seen before.  A call
/// costs as much as they do.  A guard is a small function that makes the test
/// in front of the call:
///
///   BEFORE            AFTER
///
///   caller            caller
///     |                 |
///     v                 v
///   F: done? --.      F.recurse.guard: done? --.
///     |        v        |                      v
///    rest    return     v                    return
///                     target: done? (known not to be) -.
///                       |                              v
///                      rest                          return
///
/// LLVM's partial inliner (PartialInlining.cpp) does the same by taking the
/// rest out of the function.  Here the test is duplicated instead: no values
/// cross over but the arguments, and the target may be any function that does
/// what F does.  The test is made twice, so it may read memory but not write
/// it, and nothing lies between the two times that could change what it reads.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_CALLGUARD_H
#define INLINERECURSION_PLUGIN_REWRITE_CALLGUARD_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include <optional>

namespace llvm {

class BasicBlock;
class Function;
class Instruction;

namespace inlinerecursion {

/// Where a function decides whether an activation returns without recursing.
struct EntryGuard {
  /// What is run to decide it, from the entry block on, one after the other.
  SmallVector<BasicBlock *, 4> Blocks;
  /// The successors of the last of them that lead to the recursion; several
  /// where a switch chooses between ways to recurse.
  SmallVector<BasicBlock *, 2> Beyond;
  /// The test and all that an activation does that ends here (instructions).
  unsigned Size;
};

/// The guard of \p F, which calls itself; none if it has none, or only one of
/// more than \p MaxSize instructions.  Of several tests in a row, all that fit
/// are taken; one that chooses between several ways beyond is the last.
/// \p IsRepeated: they may be made twice, otherwise they may stand behind
/// anything but self calls.
std::optional<EntryGuard> findEntryGuard(Function &F, unsigned MaxSize,
                                         bool IsRepeated = true);

/// Can \p I be executed a second time right afterwards, with the same result
/// and no other effect?
bool isRepeatable(const Instruction &I);

/// A new internal function that does what \p F does, but calls \p Target
/// beyond \p Guard, which is \p F's.  \p Target has the type of \p F and does
/// what it does, which has no variable arguments.
Function &buildGuard(Function &F, const EntryGuard &Guard, Function &Target);

/// Leaves nothing of \p F but \p Guard, which is its own, and a call of
/// \p Target beyond it; else as above.  \p Target may take more arguments than
/// \p F: \p HandedOver, which the guard computes.
void reduceToGuard(Function &F, const EntryGuard &Guard, Function &Target,
                   ArrayRef<Instruction *> HandedOver = {});

/// Takes \p Guard, which is \p F's, out of \p Copy, an unchanged copy of \p F
/// but for its callees that is called from behind the guard only.  Does nothing
/// if the guard is tested again later on, in a loop, or chooses between several
/// ways.
void removeGuard(Function &Copy, const Function &F, const EntryGuard &Guard);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_CALLGUARD_H
