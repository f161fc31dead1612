//===- FunctionSpecializeAction.h - Constants around a ring -----*- C++ -*-===//
//
/// \file
/// Follows constant arguments around a ring of copies.
///
/// A ring built for a recursion over `n % K` gives every residue a copy of its
/// own, but the argument itself stays a variable.  Where the ring is entered
/// with a constant, every activation's arguments may well be constants too:
///
///   BEFORE                         AFTER
///
///   main                           main
///     | solve(0)                     |
///     v                              v
///   +-> solve.recurse.clone        solve.specialized.0
///   |     | solve(cell + 1)          |
///   |     v                          v
///   |   solve.recurse.clone.1      solve.specialized.1
///   |     |                          |
///   +-----+                         ...  one for each tuple of constants
///                                    v
///                                  solve.specialized.81    the base case
///
/// One specialisation is made per ring and tuple of arguments (constant, or
/// left open), by cloning any copy of the ring with the constants in the place
/// of the formal arguments; folding and pruning happen while cloning
/// (CloneAndPruneFunctionInto), so that the calls which remain in the clone
/// show the next tuples.  The copies of a ring compute the same, so it does not
/// matter which of them a call was meant for.
///
/// The worklist ends when no new tuple appears, which for a bounded recursion
/// is the base case and for cyclic arguments the closing of the cycle.  Behind
/// a specialisation in which the constants decided no branch it is not followed
/// any further.  Where arguments grow for ever the budgets end it.  The calls
/// left over simply keep calling the ring.  A specialisation is thus never
/// required: whatever subset of the calls is redirected, the program computes
/// the same.
///
/// A ring that the source asked for gets what the budgets hold.  One that was
/// found (FoundRequest in Names.h) must not make the program more than a few
/// times as large, and is specialised as a whole or not at all: the activations
/// that would be left over are the deepest ones, where a search spends its
/// time.
///
/// The idea is that of LLVM's FunctionSpecialization.cpp, which does not look
/// behind the first call of a recursion and bounds its clones by profit.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H
#define INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H

#include <map>
#include <set>

namespace llvm {

class CallInst;
class Function;
class Module;

/// Specialises the rings of a module for the constants that enter them.
/// Keeps no state between its calls.
class FunctionSpecializeAction {
public:
  /// The plain direct calls that enter a ring from outside with at least one
  /// constant argument, per called copy.  \p OnlyEligible limits that to rings
  /// that were requested and accepted (the copies carry the attribute
  /// "specialize-inline-recursion-function-eligible"); otherwise every copy
  /// that stands in a cycle of copies counts.  Reads only.
  std::map<Function *, std::set<CallInst *>> selectCI(Module &M,
                                                      bool OnlyEligible);

  /// Redirects the \p Selected calls, and what follows from them around the
  /// ring, to specialisations.  The keys of \p Selected are the called copies.
  /// Calls in \p Excluded are never touched.  Returns true if the module was
  /// changed.
  bool transform(Module &M,
                 std::map<Function *, std::set<CallInst *>> &Selected,
                 const std::set<CallInst *> &Excluded);
};

} // namespace llvm

#endif // INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H
