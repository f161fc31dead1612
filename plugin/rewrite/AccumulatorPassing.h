//===- AccumulatorPassing.h - Sums handed on from call to call --*- C++ -*-===//
//
/// \file
/// A recursion that counts adds up what its self calls return: the nodes of a
/// tree, the ways to reach a sum.  What has been counted so far waits in a
/// register, which must survive the next call, for what that brings.  Handed to
/// the call instead, it need not wait:
///
///   BEFORE                      AFTER
///
///   F(n):                       F(n): return F.recurse.sum(n, 0)
///     done? ---> return 0
///     s = v + F(left)           F.recurse.sum(n, a):
///     return s + F(right)         done? ---> return a
///                                 a = F.recurse.sum(left, a + v)
///                                 return F.recurse.sum(right, a)
///
/// That is one value less to keep for every activation, and, where copies of
/// the function are merged into one, for every copy; and the last call is a
/// tail call.  LLVM's tail recursion elimination (TailRecursionElimination.cpp)
/// makes an accumulator too, but for one loop within an activation.
///
/// Sums stand for every operation on integers whose operands may be reordered
/// freely.  Wrapping around is lost as a promise to the optimizer.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_ACCUMULATORPASSING_H
#define INLINERECURSION_PLUGIN_REWRITE_ACCUMULATORPASSING_H

#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/IR/Instruction.h"
#include <optional>

namespace llvm {

class BinaryOperator;
class CallInst;
class DominatorTree;
class Function;

namespace inlinerecursion {

/// How the results of a function's self calls come together in its own.
struct Accumulation {
  /// Of one operation of a sum: which operand holds the sum so far, and the
  /// self call that takes it over, if that is the other one.
  struct Step {
    unsigned SumOperand;
    CallInst *TakenOverBy;
  };

  Instruction::BinaryOps Opcode;
  /// The self calls, and the PHIs and operations that hold their results.
  SetVector<Instruction *> Sums;
  DenseMap<BinaryOperator *, Step> Steps;
};

/// The accumulation in \p F, which calls itself; none if a self call's result
/// gets anywhere else than, by one kind of operation, into the result of \p F,
/// or if a sum cannot be handed on.
std::optional<Accumulation> findAccumulation(Function &F,
                                             const DominatorTree &DT);

/// Has \p F, whose own \p Sum is, call a new internal function that hands its
/// sum on from self call to self call.  Returns that function.
Function &passAccumulator(Function &F, const Accumulation &Sum);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_ACCUMULATORPASSING_H
