//===- FoldedBody.h - A function with known arguments -----------*- C++ -*-===//
//
/// \file
/// What is left of the body of a function where some of its arguments are
/// constants, without making a copy: LLVM's solver for sparse conditional
/// constants says which blocks are reached and which values are known.  What
/// the solver does not see is added: loops whose number of trips becomes known,
/// which are worth more than their instructions because they are unrolled, and
/// calls through pointers that become calls by name.
///
/// Reads only.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_FOLDEDBODY_H
#define INLINERECURSION_PLUGIN_RECURSION_FOLDEDBODY_H

#include "host/Specializations.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/PassManager.h"
#include <memory>
#include <optional>

namespace llvm {

class BasicBlock;
class BlockFrequencyInfo;
class CallBase;
class Instruction;
class Loop;
class SCCPSolver;
class Value;

namespace inlinerecursion {

class FoldedBody {
public:
  /// Of \p F, nothing known yet.
  FoldedBody(Function &F, FunctionAnalysisManager &FAM);
  ~FoldedBody();

  /// Puts the constants of \p Tuple in the place of the arguments.  All other
  /// questions are about these from now on.
  void fold(const ArgumentTuple &Tuple);

  /// The self calls that may be made, in the order of the body.
  ArrayRef<CallBase *> getSelfCalls() const { return SelfCalls; }

  /// What \p Call, one of them, passes: null for what is not known.  Several
  /// tuples, one for each trip, if it is made in a loop that is known to make
  /// few, and what counts the trips is passed; none if it makes none.
  SmallVector<ArgumentTuple, 4> getPassed(const CallBase &Call) const;

  /// The instructions that are left.
  unsigned getSize() const { return Size; }

  /// What the blocks that are left take, each instruction by what the target
  /// says of it and by how often its block is run, and the part of that which
  /// is known.
  double getTime() const { return Time; }
  double getSaved() const { return Saved; }

private:
  void solve(ArgumentTuple Tuple);
  Constant *findConstant(const Value &V) const;
  bool isFolded(const Instruction &I) const;
  double getCost(const Instruction &I) const;
  void weigh(const BasicBlock &BB);
  std::optional<unsigned> findTrips(const Loop &L) const;
  Constant *findAtTrip(const Value &V, const Loop &L, unsigned Trip) const;
  double weighLoop(const Loop &L) const;

  Function &F;
  FunctionAnalysisManager &FAM;
  BlockFrequencyInfo &Frequencies;
  std::unique_ptr<SCCPSolver> Solver;
  /// What is in the place of the arguments.
  ArgumentTuple Known;
  /// What is known whatever the arguments are.
  SmallPtrSet<const Instruction *, 8> FoldedAnyway;

  SmallVector<CallBase *, 4> SelfCalls;
  unsigned Size = 0;
  double Time = 0;
  double Saved = 0;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_FOLDEDBODY_H
