//===- EntrySplit.h - What a recursion does before its test -----*- C++ -*-===//
//
/// \file
/// Many recursions do their work first and then look whether there is anything
/// to recurse into: a visitor of a tree, a search that counts where it has
/// been.  A guard (CallGuard.h) cannot be put in front of their calls, because
/// it would do the work twice.  But the work and the test can be taken out of
/// the recursion and done by those who call:
///
///   BEFORE                    AFTER
///
///   F: work                   F: work                  F.recurse.rest <---+
///      done? ---> return         done? ---> return       loop             |
///      loop                      F.recurse.rest            work           |
///        F                                                 done? --.      |
///        |                                                 else ---|------+
///        v                                                         v
///       ...                                              ...
///
/// An activation that has nothing to recurse into, and there are more of them
/// than of all others, is then no call: no frame is made, no register saved.
/// LLVM's partial inliner (PartialInlining.cpp) takes the rest out in the same
/// way, but only where the test is all that stands in front of it.  What the
/// work has computed becomes arguments.
///
/// A test that chooses between several ways to recurse, a switch, is made once
/// more by the rest.  To those who call, all ways are the same.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_ENTRYSPLIT_H
#define INLINERECURSION_PLUGIN_REWRITE_ENTRYSPLIT_H

#include "plugin/rewrite/CallGuard.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/ADT/StringRef.h"
#include <optional>

namespace llvm {

class AllocaInst;
class Function;
class Instruction;

namespace inlinerecursion {

/// Where a function is taken apart.
struct EntrySplit {
  /// What is run up to the test; need not be repeatable.
  EntryGuard Head;
  /// Where the rest begins: beyond the head, or once more with the test, if
  /// that is the head of a loop or chooses between several ways to recurse.
  BasicBlock *Begin;
  /// The block of the head that leads there; null if the test is all there is
  /// of the head.
  BasicBlock *Before;
  /// The instruction of Begin that the rest begins with, where Begin is the
  /// last block of the head and works before it tests; Before is the same block
  /// then.  Null where the rest begins with a whole block.
  Instruction *FirstOfTest;
  /// What is computed in the head and used beyond it.
  SmallVector<Instruction *, 4> LiveValues;
  /// Variables in memory that only the rest uses.
  SmallVector<AllocaInst *, 4> Variables;
};

/// The place where \p F, which calls itself and takes no variable arguments,
/// can be taken apart; none if there is no test, or if work and test are more
/// than \p MaxSize instructions, or hand over too much.  If \p InlinerFollows,
/// calls in the head may turn out to be nothing, and it is left for later.
std::optional<EntrySplit> findEntrySplit(Function &F, unsigned MaxSize,
                                         bool InlinerFollows);

/// Takes \p F apart at \p Split, which is its own and invalid afterwards.
/// Returns the rest, a new internal function that calls itself where \p F did.
Function &splitEntry(Function &F, EntrySplit Split);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_ENTRYSPLIT_H
