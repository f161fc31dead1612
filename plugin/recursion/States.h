//===- States.h - What constants do along a recursion -----------*- C++ -*-===//
//
/// \file
/// The *state* of an activation is the tuple of those arguments whose values
/// follow from constants: `solve(row + 1, board)`, entered with row 0, knows
/// its row in every activation, and nothing of the board.
///
/// From each call from outside that has constants for some arguments, the self
/// calls that the state leaves reachable are followed, state by state.  What is
/// reachable, and what a self call passes, is found by LLVM's solver for sparse
/// conditional constants (SCCPSolver.h) on the body as it is, with the state in
/// the place of the arguments: arithmetic, remainders, selects, loads from
/// constant tables and addresses of functions are all known to it.
///
/// Where a self call stands in a loop that the state lets make few trips, and
/// what counts them is passed, each trip leads to a state of its own.
///
/// Arguments are in the state as long as every reachable self call passes a
/// constant for them.  One that does not leaves the state, and the search
/// starts again without it.  So does the one that takes most values, where
/// there are too many: a counter towards an unknown limit, or the number of a
/// node in a tree; and one without which there are fewer states that save
/// nearly as much.  What is left when no call from outside has a constant for
/// it is no state at all.
///
/// The calls from outside are asked in the order of the module, and what one
/// has led to is there for the next.
///
/// Reads only.  At most MaxStates states of one call from outside, at most
/// MaxWork instructions looked at for all of them and all attempts together.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_STATES_H
#define INLINERECURSION_PLUGIN_RECURSION_STATES_H

#include "host/Specializations.h"
#include "llvm/IR/PassManager.h"
#include <optional>
#include <vector>

namespace llvm {

class CallBase;

namespace inlinerecursion {

/// What a self call leads to.
struct Successor {
  CallBase *Call;
  /// The number of the state.
  unsigned State;
  /// Where a call in a loop leads to another state in each trip: the argument
  /// that says which, a number in all of them.  Not for an invoke.
  std::optional<unsigned> Selector;
};

/// One tuple of known arguments, and what the function is with them.
struct State {
  /// Null for arguments that are not part of the state.
  ArgumentTuple Arguments;
  /// The self calls that it may make, in the order of the body; one call once
  /// for each state that it leads to.
  SmallVector<Successor, 4> Next;
  /// The instructions that are left of the body.
  unsigned Size = 0;
  /// What an activation takes, in instructions weighted by how often their
  /// blocks run, and the part of that which is not done because the arguments
  /// are known.
  double Time = 0;
  double Saved = 0;
};

/// The part of the time that is saved in \p States (0 to 1).
double getSavedShare(ArrayRef<State> States);

struct StateSet {
  /// In the order in which they are met.
  std::vector<State> States;
  /// The calls from outside, in the order of the module, and the states that
  /// they enter.
  SmallVector<std::pair<CallBase *, unsigned>, 4> Entries;
  /// An argument that left the state because it took too many values; null if
  /// none did.
  const Argument *Growing = nullptr;

  bool empty() const { return States.empty(); }

  /// The instructions of all states.
  uint64_t getSize() const;

  /// The part of the time that is saved (0 to 1).
  double getSavedShare() const {
    return inlinerecursion::getSavedShare(States);
  }

  /// Is the argument with the number \p Index part of the state of any
  /// activation?
  bool isKnown(unsigned Index) const;

  /// The numbers of all of which that holds, in ascending order.
  SmallVector<unsigned, 4> getKnownArguments() const;
};

/// Is there a call of \p F from outside with a constant, so that it is worth
/// to look for states?  \p F is called directly, at least.
bool isEnteredWithConstants(const Function &F);

/// The states of \p F, which calls itself; none if there are no finite ones
/// within the bounds.
StateSet findStates(Function &F, FunctionAnalysisManager &FAM);

/// The states of the arguments of \p F in \p Wanted, by their numbers, and of
/// no others; as above.
StateSet findStatesOf(Function &F, ArrayRef<unsigned> Wanted,
                      FunctionAnalysisManager &FAM);

/// Most states that are followed from one call from outside.
constexpr unsigned MaxStates = 128;
/// Most instructions that are looked at for one function.
constexpr unsigned MaxWork = 200000;

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_STATES_H
