//===- StateCopies.h - One copy for each state ------------------*- C++ -*-===//
//
/// \file
/// Gives each state of a function (recursion/States.h) a copy in which the
/// arguments are constants, and leads the calls there:
///
///   BEFORE                      AFTER
///
///   main                        main
///     | solve(0, board)           | .
///     v                           v
///   solve <--+                  solve.specialized.0._
///     |      |                    |
///     +------+                    v
///   solve(row + 1, board)       solve.specialized.1._
///                                 |
///                                ...  to the last row
///
/// Calls between copies stay calls unless little is left of the callee: one
/// function of all rows needs a frame and registers for all of them, and takes
/// long to compile.  Where the variables in memory are large, they all stay
/// calls, so that no activation takes more stack than before.
///
/// The function itself stays for those who call it with something else.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_STATECOPIES_H
#define INLINERECURSION_PLUGIN_REWRITE_STATECOPIES_H

#include "llvm/ADT/SmallVector.h"

namespace llvm {

class Function;

namespace inlinerecursion {

struct StateSet;

/// Builds a copy of \p F for each of \p States, which were found for it as it
/// is.  To \p RecursiveCopies go those that call themselves, but for those with
/// large frames, to \p OtherCopies all others.
void buildStates(Function &F, const StateSet &States,
                 SmallVectorImpl<Function *> &RecursiveCopies,
                 SmallVectorImpl<Function *> &OtherCopies);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_STATECOPIES_H
