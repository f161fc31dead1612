//===- InlineRecursion.h - Chains of copies for recursion -------*- C++ -*-===//
//
/// \file
/// A module pass that prepares directly recursive functions for the inliner.
///
/// An inliner stops at a recursive call: inlining a function into itself has no
/// natural end.  This pass gives it one.  A recursive function that it accepts
/// is copied N times and the direct calls are rewired, so that callers outside
/// the function enter copy 0, copy k calls copy k+1, and the last copy calls
/// back into the function itself (a chain) or into copy 0 (a ring).  Every link
/// is an ordinary call of an ordinary internal function, and the inliner that
/// runs later is free to flatten it; the copies' `alwaysinline` and `noinline`
/// attributes steer it.
///
/// Where in the pipeline: directly before the inliner, on functions that are
/// already in SSA form (after SROA), so that the counts describe the code that
/// will be inlined and the argument's uses are visible.
///
/// What it does not decide: nothing is inlined here, no call that is not a
/// plain direct `call` is touched (no `invoke`, no call through a pointer or
/// through another function type), and nothing guards against functions that
/// must not be copied or redirected at all (interposable linkage, addresses of
/// blocks, ...).  A host compiler keeps the pass away from those by giving them
/// the attribute "llvm.recurse.clone", which the pass refuses.
///
/// The way of one function:
///
///   filter -> specialisation gate -> costing -> clone budget -> clone chain
///
/// The depth of the chain travels from the gate or the costing to the budget
/// and the chain in the option `inline-recursion-depth`.  That option is
/// process-wide, so two runs of the pass must not overlap in one process.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PASS_INLINERECURSION_H
#define INLINERECURSION_PASS_INLINERECURSION_H

#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/STLFunctionalExtras.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/PassManager.h"
#include "llvm/Pass.h"
#include <cstdint>
#include <optional>

namespace llvm {

class DominatorTree;
class Function;
class Module;
class PassRegistry;
class SCEV;
class ScalarEvolution;

/// The driver: walks one module, decides for each function, builds the chains.
///
/// A plain record that a pass entry (or a host compiler, or a unit test) fills
/// on its stack: set every field but CloneCount, then call processModule().
/// Both getters are non-owning and must outlive that call; they are invoked
/// without a test.
class InlineRecursion {
public:
  class InlineRecursionCosting;

  /// True once the specialisation gate accepted a function; never cleared.
  bool SpecializeSeen;
  /// Deepest chain that the gate may ask for, in copies (never negative).
  int64_t SpecialDepthLimit;
  /// 0 to 4; 0 means "not given" and is resolved by processModule().  Any other
  /// value is invalid and costed like level 2.
  unsigned OptLevel;
  /// Sum of the depths granted so far in this module.
  unsigned CloneCount;
  /// ScalarEvolution of a function; the result is never null.
  function_ref<ScalarEvolution *(Function &)> GetSE;
  /// Dominator tree of a function; may yield null (see InlineRecursionCosting).
  function_ref<DominatorTree *(Function &)> GetDT;

  /// Runs over \p M, which may be empty.  Returns true if a function was
  /// accepted, even with a depth of 0 (which copies nothing).
  bool processModule(Module &M);

  /// Decides about \p F (not null) and builds its chain.  Returns true if it
  /// was accepted.  Leaves the depth of \p F in `inline-recursion-depth`.
  bool inlineRecursionFunction(Function *F);

  /// Would the driver look at \p F (not null) at all?  For other passes of a
  /// host compiler; reads only.
  bool isLegalToInlineRecursion(Function *F);

  /// The specialisation gate: \p F (not null, with a body) asks for it by the
  /// attribute "specialize-inline-recursion-function" and its entry block takes
  /// a bounded remainder of an argument.  On acceptance sets
  /// `inline-recursion-depth` to the bound, marks \p F with
  /// "specialize-inline-recursion-function-eligible" and returns true.
  bool isSpecializeAllowed(Function *F);

  /// Builds one link.  To be called with the same \p F for \p Level = 0, 1, 2,
  /// ... below `inline-recursion-depth`; \p Clones is empty before level 0 and
  /// grows by one copy per call.  \p SpecializeAllowed closes the ring.
  void transformInlineRecursion(Function *F, unsigned Level,
                                SmallVector<Function *, 4> &Clones,
                                bool SpecializeAllowed);
};

/// The costing record of one function: what it looks like, and whether a chain
/// pays.  Build it, run analyzeFunction() exactly once, then ask.
class InlineRecursion::InlineRecursionCosting {
public:
  unsigned NumOfBlocks = 0;
  /// Instructions of every kind, debug intrinsics included.
  unsigned NumOfInsts = 0;
  /// `br` instructions, conditional and unconditional.
  unsigned NumOfBranches = 0;
  /// `call` instructions, whatever their callee.
  unsigned NumOfFunctionCalls = 0;
  /// `call` instructions whose direct callee is F.
  unsigned NumOfRecursiveCalls = 0;
  /// Direct call uses of F per calling function, in the order in which F's use
  /// list first meets the callers.  A call that also passes F as an argument
  /// holds two uses and counts twice.
  MapVector<Function *, unsigned> NumOfCandidateFunCallSite;
  /// Total of the counts above.
  unsigned NumOfCandidateFunCallSiteInMod = 0;
  bool IsRecursiveFunction = false;
  Function *F;
  ScalarEvolution *SE;
  /// May be null as long as no branch or switch depends on F's argument.
  DominatorTree *DT;
  unsigned OptLevel;

  InlineRecursionCosting(Function *F, ScalarEvolution *SE, DominatorTree *DT,
                         unsigned OptLevel)
      : F(F), SE(SE), DT(DT), OptLevel(OptLevel) {}

  /// Fills the counts.  Linear in F's size and in the length of its use list.
  void analyzeFunction();

  /// Activations of F per entry from outside, if that is one constant on which
  /// all recursive call sites agree; else null.  A non-null result is a
  /// SCEVConstant of any width.
  const SCEV *estimateRecursionDepth();

  /// Is every use of F a plain direct call, and exactly one of them outside F?
  bool checkIfFunctionCalledOnce();

  /// What a constant argument would save, in instructions, and the size of F
  /// that it has to exceed (a share of NumOfInsts).
  struct InlineBenefit {
    uint64_t Benefit;
    unsigned Limit;
  };

  /// The benefit of a chain; none if F does not have exactly one argument.
  std::optional<InlineBenefit> estimateInlineBenefit();

  /// Would enough of F fold away if its single argument were a constant?
  bool estimateInlineBenefitAndCheckInlineFeasiblity();

  /// Does a chain pay at OptLevel?  May set `inline-recursion-depth`; replaces
  /// an invalid OptLevel by 2 after a warning on dbgs().
  bool isProfitableToInline();

  /// The rule of level 0: one outside call, a known depth, enough benefit.
  bool isProfitableToInlineInDefaultFlow();

  /// Prints the counts to dbgs(), one labelled line per field.
  void printFunctionParameters();
};

/// Legacy pass manager entry, argument "inlinerecursion".
class InlineRecursionLegacy : public ModulePass {
public:
  static char ID;

  /// \p OptLevel as in InlineRecursion::OptLevel.
  explicit InlineRecursionLegacy(int OptLevel);
  InlineRecursionLegacy() : InlineRecursionLegacy(0) {}
  ~InlineRecursionLegacy() override;

  bool runOnModule(Module &M) override;
  void getAnalysisUsage(AnalysisUsage &AU) const override;

private:
  int OptLevel;
};

/// New pass manager entry.
class InlineRecursionPass : public PassInfoMixin<InlineRecursionPass> {
public:
  /// \p OptLevel as in InlineRecursion::OptLevel.
  explicit InlineRecursionPass(int OptLevel = 0) : OptLevel(OptLevel) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);

private:
  int OptLevel;
};

/// A new legacy pass, registered if it was not; the pass manager owns it.
/// \p OptLevel as in InlineRecursion::OptLevel.
Pass *createInlineRecursionLegacyPass(int OptLevel);

/// Registers the legacy pass, once per process however often it is called.
void initializeInlineRecursionLegacyPass(PassRegistry &Registry);

} // namespace llvm

#endif // INLINERECURSION_PASS_INLINERECURSION_H
